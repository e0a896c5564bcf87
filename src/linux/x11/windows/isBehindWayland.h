// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

class X11Connection;

/// The server is one that a Wayland compositor keeps for X programs. It knows nothing of the windows, keys
/// and clipboard of all others.
bool isBehindWayland(X11Connection& connection);

} // namespace talvera
