// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

namespace talvera {

/// As long as it lives, the server works for this connection alone: what it has answered is still true when
/// it does what is asked for next. All other programs stand still meanwhile, so no other connection may be
/// waited for, and no lock.
class ServerGrab {
public:
    explicit ServerGrab(X11Connection& connection)
        : m_connection(connection) {
        xcb_grab_server(m_connection.get());
    }
    ~ServerGrab() {
        xcb_ungrab_server(m_connection.get());
        m_connection.flush();
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

private:
    X11Connection& m_connection;
};

} // namespace talvera
