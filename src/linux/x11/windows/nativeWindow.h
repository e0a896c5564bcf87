// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xproto.h>

class QWindow;

namespace talvera {

/// The id of a window of ours, which is made if it hasn't been yet. When this returns the server knows the
/// window, so that connections other than the toolkit's can go on with it. Main thread.
xcb_window_t nativeWindow(QWindow& window);

} // namespace talvera
