// SPDX-License-Identifier: MIT
#include "linux/x11/typing/InputMethod.h"

#include "linux/x11/server/X11Connection.h"

namespace talvera {

InputMethod inputMethod(X11Connection& connection) {
    auto found = InputMethod::None;
    for (const xcb_atom_t server : connection.property(connection.root(), connection.atom("XIM_SERVERS"))) {
        if (connection.selectionOwner(server) == XCB_WINDOW_NONE)
            continue; // it has ended, and has left its name
        if (server == connection.atom("@server=fcitx"))
            return InputMethod::Rewrites;
        found = InputMethod::Composes;
    }
    return found;
}

} // namespace talvera
