// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

namespace talvera {

/// What an event tells of, such as XCB_KEY_PRESS, whether the server or another client has sent it; 0 for an
/// error.
inline int eventType(const xcb_generic_event_t& event) {
    constexpr int sentByAClient = 0x80;
    return event.response_type & ~sentByAClient;
}

} // namespace talvera
