// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xproto.h>

namespace talvera {

class X11Connection;

/// Asks compositors to draw no shadow around `window`.
void forbidShadow(X11Connection& connection, xcb_window_t window);

} // namespace talvera
