// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xproto.h>

#include <optional>

namespace talvera {

class X11Connection;

/// The server's clock, as selections and requests for activation want it; nothing when the server doesn't
/// answer. Costs a round trip. Other events that come meanwhile stay to be polled.
std::optional<xcb_timestamp_t> serverTime(X11Connection& connection);

} // namespace talvera
