// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <map>

namespace talvera {

class X11Connection;

/// Keeps windows above all others, also above those that come up meanwhile. Raises each a few times at most
/// while it is shown: two that both want to be the topmost would never come to rest.
class X11OverlayStack {
public:
    /// Watches the root window's stack on `connection`, which outlives it, as long as a window is kept.
    explicit X11OverlayStack(X11Connection& connection)
        : m_connection(connection) {}

    /// Raises the window now, and again until it is let go.
    void keep(xcb_window_t window);
    void letGo(xcb_window_t window);

    /// Takes note of an event of the connection, and raises the windows when all events are noted.
    void note(const xcb_generic_event_t& event);
    void settle();

private:
    void watch(bool watches);
    void raise(xcb_window_t window);

    X11Connection& m_connection;
    std::map<xcb_window_t, int> m_raisesLeft;
    bool m_hasChanged = false;
};

} // namespace talvera
