// SPDX-License-Identifier: MIT
#pragma once

#include <QQuickWindow>

#include <functional>

namespace talvera {

/// A window without a frame that takes the keyboard all the same.
class KeyablePanel final : public QQuickWindow {
    Q_OBJECT

public:
    KeyablePanel();

    /// Is asked for each key before the view gets it; true swallows it.
    std::function<bool(Qt::Key key)> onKeyDown;
    /// The window has come on screen.
    std::function<void()> onShown;
    /// The window had the keyboard and has lost it.
    std::function<void()> onResignKey;
    /// The view asks for another size than before; called in a turn of its own.
    std::function<void()> onContentChanged;

public Q_SLOTS:
    void contentChanged() {
        if (onContentChanged)
            onContentChanged();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void exposeEvent(QExposeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void activityChanged();

    bool m_shown = false;
    bool m_wasActive = false;
};

} // namespace talvera
