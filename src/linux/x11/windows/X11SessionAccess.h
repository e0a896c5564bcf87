// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/windows/EwmhWindows.h"
#include "platform/desktop/SessionLack.h"

#include <optional>
#include <vector>

namespace talvera {

class X11Connection;

/// Whether this session lets us watch keys, post keys and see the active window. Main thread.
class X11SessionAccess {
public:
    /// `connection` may be null, and outlives this.
    explicit X11SessionAccess(X11Connection* connection);

    /// What is lacking now; empty when all is there. A window manager may come and go.
    std::vector<SessionLack> lacks();

    bool canWatchKeys() const { return m_canWatchKeys && !m_isBehindWayland; }

private:
    X11Connection* m_connection;
    std::optional<EwmhWindows> m_windows;
    bool m_isBehindWayland = false;
    bool m_canWatchKeys = false;
    bool m_canPostKeys = false;
};

} // namespace talvera
