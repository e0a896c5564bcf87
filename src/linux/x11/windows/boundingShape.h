// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <xcb/xcb.h>

#include <vector>

namespace talvera {

class X11Connection;

/// Cuts `window` to these rectangles, in its own pixels; without any it is whole again. Returns when the
/// server has done so.
void setBoundingShape(X11Connection& connection, xcb_window_t window, const std::vector<QRect>& rectangles);

/// The same for where `window` takes the mouse.
void setInputShape(X11Connection& connection, xcb_window_t window, const std::vector<QRect>& rectangles);

} // namespace talvera
