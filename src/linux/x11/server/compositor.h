// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

namespace talvera {

/// The selection that a compositor owns as long as it runs. Of the server's only screen: today's servers have
/// one, however many monitors.
inline xcb_atom_t compositorSelection(X11Connection& connection) {
    return connection.atom("_NET_WM_CM_S0");
}

/// Whether translucent windows are shown as such now.
inline bool isComposited(X11Connection& connection) {
    return connection.selectionOwner(compositorSelection(connection)) != XCB_WINDOW_NONE;
}

} // namespace talvera
