// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

namespace talvera {

class X11Connection;

/// Whether something lies over the window that the window manager knows nothing of and that takes the input:
/// a locked screen, as all lockers make it. Nothing that is typed would reach the window. Overlays that let
/// the input through, as compositors have them, and small windows such as menus and notifications don't
/// count.
bool isCovered(X11Connection& connection, xcb_window_t window);

} // namespace talvera
