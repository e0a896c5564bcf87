// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/windows/EwmhWindows.h"
#include "platform/desktop/SessionAccess.h"

namespace talvera {

class X11Connection;

/// What an X11 session lets us do: watch keys by XInput 2, post them by XTEST, and see and change the active
/// window by its window manager. A server behind a Wayland compositor, which shows us only the keys meant for
/// X programs, counts as none.
class X11SessionAccess final : public SessionAccess {
public:
    /// `connection` outlives this.
    explicit X11SessionAccess(X11Connection& connection);

    std::vector<SessionLack> lacks() override;
    bool canWatchKeys() override { return m_canWatchKeys && !m_isBehindWayland; }

private:
    X11Connection& m_connection;
    EwmhWindows m_windows;
    bool m_isBehindWayland = false;
    bool m_canWatchKeys = false;
    bool m_canPostKeys = false;
};

} // namespace talvera
