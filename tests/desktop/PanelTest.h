// SPDX-License-Identifier: MIT
#pragma once

#include "DesktopTest.h"
#include "ScreenReader.h"

#include <QJsonValue>
#include <QPoint>
#include <QRect>

#include <optional>

namespace talvera::test {

/// A test in which the user works with the status panel.
class PanelTest : public DesktopTest {
protected:
    /// Where the panel is, in pixels; nothing while it isn't on the screen.
    static std::optional<QRect> panel();
    /// Whether it comes to be there and has the keyboard.
    static bool panelComes();
    static bool panelGoes();

    /// Opens it in the way that works on every desktop: by a second start.
    void openPanel();
    void closePanel();

    void click(QPoint place, int button = 1) { keys.click(place.x(), place.y(), button); }

    static inline const QString anyRole; ///< buttons have only one of Qt's roles before Qt 6.5

    /// What the panel shows under this role and name; throws std::runtime_error when it doesn't in time.
    ScreenReader::Element shown(const QString& role, const QString& name) const;
    void clickOn(const QString& role, const QString& name) { click(shown(role, name).place.center()); }

    /// What is stored in the preferences under this key by now.
    QJsonValue stored(const QString& key) const;
    bool becomes(const QString& key, const QJsonValue& value) const;
};

} // namespace talvera::test
