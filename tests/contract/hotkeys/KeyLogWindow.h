// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Server.h"

#include <memory>
#include <string>
#include <vector>

namespace talvera::test {

/// An application: a window that has the focus and writes down which keys reach it. Throws
/// std::runtime_error when it can't have the focus.
class KeyLogWindow {
public:
    KeyLogWindow();

    /// What has arrived since the last call, once the server has worked off everything before: "+65" for a
    /// key press of keycode 65, "-65" for its release.
    std::vector<std::string> takeKeys();

    /// Everything that the server has told until now has been sent to every client.
    void settleServer();

    X11Connection& connection() { return *m_connection; }

private:
    void awaitFocus();

    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    xcb_window_t m_window = 0;
};

} // namespace talvera::test
