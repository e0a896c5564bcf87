// SPDX-License-Identifier: MIT
#include "linux/x11/server/serverTime.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/eventType.h"

namespace talvera {

std::optional<xcb_timestamp_t> serverTime(X11Connection& connection) {
    // The server tells its time with each change of a property, so we change one of a window of our own.
    auto* const xcb = connection.get();
    const auto window = xcb_generate_id(xcb);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, connection.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_change_property(xcb, XCB_PROP_MODE_APPEND, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0, nullptr);
    const std::uint32_t none = 0; // or its end would be announced, too
    xcb_change_window_attributes(xcb, window, XCB_CW_EVENT_MASK, &none);
    xcb_destroy_window(xcb, window);
    const auto isOurs = [window](const xcb_generic_event_t& event) {
        return eventType(event) == XCB_PROPERTY_NOTIFY &&
               reinterpret_cast<const xcb_property_notify_event_t&>(event).window == window;
    };
    const auto notice =
        connection.waitForEvent(isOurs, std::chrono::steady_clock::now() + X11Connection::answerTimeout);
    if (!notice)
        return std::nullopt;
    return reinterpret_cast<const xcb_property_notify_event_t&>(*notice).time;
}

} // namespace talvera
