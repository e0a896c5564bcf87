// SPDX-License-Identifier: MIT
#include "linux/x11/windows/forbidShadow.h"

#include "linux/x11/server/X11Connection.h"

namespace talvera {

void forbidShadow(X11Connection& connection, xcb_window_t window) {
    const std::uint32_t none = 0;
    for (const char* shadow : {"_COMPTON_SHADOW", "_KDE_NET_WM_SHADOW"})
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, connection.atom(shadow),
                            XCB_ATOM_CARDINAL, 32, 1, &none);
}

} // namespace talvera
