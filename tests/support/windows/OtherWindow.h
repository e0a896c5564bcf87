// SPDX-License-Identifier: MIT
#pragma once

#include "eventually.h"
#include "linux/x11/server/X11Server.h"

#include <QColor>
#include <QRect>

#include <functional>
#include <memory>

namespace talvera::test {

/// Another program's window, of one colour, on a connection of its own.
class OtherWindow {
public:
    struct Wishes {
        bool fullScreen = false;
        int bottomStrut = 0; ///< makes a dock of it that keeps so much of the screen for itself
    };

    /// Returns when the window manager has shown it.
    OtherWindow(const QRect& area, const QColor& color, const Wishes& wishes);
    OtherWindow(const QRect& area, const QColor& color)
        : OtherWindow(area, color, Wishes()) {}

    /// Asks the window manager for the focus and waits for it.
    void activate();
    bool isActive();
    /// Whether the keyboard goes to it.
    bool hasFocus();

    /// The number of clicks that have met it, once `expected` have or time is up.
    int awaitClicks(int expected);
    /// The number of clicks that have met it by now.
    int clicks();

    /// The number of keys that have been struck into it, once `expected` have or time is up.
    int awaitKeys(int expected);
    /// The number of keys that have been struck into it by now.
    int keys();

    /// Its middle on the screen, wherever the window manager has put it.
    QPoint middle();

    X11Connection& connection() { return *m_connection; }
    xcb_window_t id() const { return m_window; }

private:
    void set(const char* property, xcb_atom_t type, const std::vector<std::uint32_t>& items);
    void readEvents();

    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    xcb_window_t m_window = XCB_WINDOW_NONE;
    int m_clicks = 0;
    int m_keys = 0;
    bool m_exposed = false;
};

} // namespace talvera::test
