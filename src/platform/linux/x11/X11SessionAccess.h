// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/EwmhWindows.h"

#include <QString>

#include <optional>
#include <vector>

namespace talvera {

class X11Connection;

/// What this session lacks for us to work in it.
enum class SessionLack {
    XServer,      ///< there is none, as in a Wayland session without one
    KeyWatching,  ///< the X server doesn't announce keys (XInput 2)
    KeyPosting,   ///< the X server doesn't take keys from programs (XTEST)
    ActiveWindow, ///< no window manager that tells of it and changes it
};

/// Why we can't work, in a plain sentence for the user.
QString reason(SessionLack lack);

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
