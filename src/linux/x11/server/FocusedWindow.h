// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <set>
#include <sys/types.h>

namespace talvera {

/// The window that gets the keys, as an application knows it; none if there is no such window.
xcb_window_t focusedWindow(X11Connection& connection);

/// Whether there is such a window, or still is.
bool windowExists(X11Connection& connection, xcb_window_t window);

/// The client that has made the window, as the server numbers its clients. A program on another machine is
/// one, too.
xcb_window_t clientOf(const X11Connection& connection, xcb_window_t window);

/// The process on this machine that has made the window; 0 if that can't be known.
pid_t processOfWindow(X11Connection& connection, xcb_window_t window);

/// The processes on this machine that are connected to the server; none if that can't be known.
std::set<pid_t> processesOfClients(X11Connection& connection);

} // namespace talvera
