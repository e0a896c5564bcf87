// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <QQmlEngine>
#include <QVariantMap>

#include <functional>
#include <memory>

class QQuickItem;

namespace talvera {

class DesktopAppearance;

/// What all windows share: the QML engine and the theme, which follows the desktop between light and dark.
/// Main thread only; outlives the views.
class ViewEngine {
public:
    /// Chooses how windows are drawn and what of Qt stays unloaded. Before the QGuiApplication is made.
    static void prepareProcess();

    explicit ViewEngine(DesktopAppearance& appearance);
    ~ViewEngine();
    ViewEngine(const ViewEngine&) = delete;
    ViewEngine& operator=(const ViewEngine&) = delete;

    /// Reads in the background what the view of `name`.qml is made of, so that it comes as quickly the first
    /// time as later, and so that what stays in memory for good isn't strewn among what a window needs for a
    /// while.
    void prepare(const QString& name);

    /// Makes the view of `name`.qml, such as "hud/HUDRoot". It belongs to the caller. A view that can't be
    /// made ends the program: it is part of it.
    std::unique_ptr<QQuickItem> create(const QString& name, const QVariantMap& properties);

    /// Returns to the system what a closed view has freed. What makes it again quickly is kept.
    void giveBackFreed();

    /// Lets go of what no view needs any more, too.
    void giveBackMemory();
    std::function<void()> onMemoryGivenBack; ///< for what isn't the views' own

    /// Said by each large window at its end.
    void windowHasGone();
    std::function<void()> onWindowGone;

    /// Whether the desktop shows translucent windows as such, as those find it that are about to be shown.
    void setTranslucent(bool translucent);

    QQmlEngine& engine() { return m_engine; }

    /// The object that the views know as Theme.
    QObject& theme() { return *m_theme; }

private:
    QQmlEngine m_engine;
    QObject* m_theme;
    Subscription m_appearance;
};

} // namespace talvera
