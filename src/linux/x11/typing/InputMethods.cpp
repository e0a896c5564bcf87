// SPDX-License-Identifier: MIT
#include "linux/x11/typing/InputMethods.h"

#include "linux/x11/server/X11Connection.h"

#include <algorithm>

namespace talvera {

bool isInputMethodThere(X11Connection& connection) {
    const auto servers = connection.property(connection.root(), connection.atom("XIM_SERVERS"));
    // One that has ended may have left its name, but it owns it no more.
    return std::any_of(servers.begin(), servers.end(), [&](xcb_atom_t server) {
        return connection.selectionOwner(server) != XCB_WINDOW_NONE;
    });
}

} // namespace talvera
