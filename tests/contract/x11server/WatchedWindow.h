// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <string_view>

namespace talvera::test {

/// A window whose properties announce each change to the connection that made it.
class WatchedWindow {
public:
    explicit WatchedWindow(X11Connection& connection)
        : m_connection(connection)
        , m_window(xcb_generate_id(connection.get())) {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, m_window, connection.root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }

    xcb_window_t id() const { return m_window; }

    void setItem(std::string_view property, std::uint32_t item) {
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_window, m_connection.atom(property),
                            XCB_ATOM_CARDINAL, 32, 1, &item);
    }
    void setText(std::string_view property, std::string_view text) {
        xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_window, m_connection.atom(property),
                            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(text.size()), text.data());
    }

    /// The property of ours that the event tells of; none when it tells of something else.
    xcb_atom_t changedIn(const xcb_generic_event_t& event) const {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        const bool isOurs = (event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY && change.window == m_window;
        return isOurs ? change.atom : xcb_atom_t{XCB_ATOM_NONE};
    }

private:
    X11Connection& m_connection;
    xcb_window_t m_window;
};

} // namespace talvera::test
