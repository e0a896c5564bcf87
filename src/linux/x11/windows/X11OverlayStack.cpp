// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11OverlayStack.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/eventType.h"

#include <utility>

namespace talvera {

namespace {

constexpr int mostRaises = 8; ///< while shown once

} // namespace

void X11OverlayStack::keep(xcb_window_t window) {
    if (m_raisesLeft.empty())
        watch(true);
    m_raisesLeft[window] = mostRaises;
    raise(window);
}

void X11OverlayStack::letGo(xcb_window_t window) {
    if (m_raisesLeft.erase(window) > 0 && m_raisesLeft.empty())
        watch(false);
}

void X11OverlayStack::note(const xcb_generic_event_t& event) {
    switch (eventType(event)) {
    case XCB_MAP_NOTIFY:
        if (!m_raisesLeft.contains(reinterpret_cast<const xcb_map_notify_event_t&>(event).window))
            m_hasChanged = true;
        break;
    case XCB_CONFIGURE_NOTIFY:
        if (m_raisesLeft.contains(reinterpret_cast<const xcb_configure_notify_event_t&>(event).above_sibling))
            m_hasChanged = true;
        break;
    default:
        break;
    }
}

void X11OverlayStack::settle() {
    if (!std::exchange(m_hasChanged, false))
        return;
    for (auto& [window, left] : m_raisesLeft) {
        if (left > 0) {
            --left;
            raise(window);
        }
    }
}

void X11OverlayStack::watch(bool watches) {
    const std::uint32_t events = watches ? XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY : 0;
    xcb_change_window_attributes(m_connection.get(), m_connection.root(), XCB_CW_EVENT_MASK, &events);
    m_connection.flush();
}

void X11OverlayStack::raise(xcb_window_t window) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    m_connection.flush();
}

} // namespace talvera
