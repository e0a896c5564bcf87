// SPDX-License-Identifier: MIT
#pragma once

#include "linux/clipboard/ClipboardLink.h"
#include "linux/wayland/clipboard/ClipboardOwner.h"

namespace talvera {

/// Holds the clipboard of a Wayland session for the agent at the other end of a socket.
class WaylandClipboardService {
public:
    /// `connection` is this object's alone.
    WaylandClipboardService(WaylandConnection& connection, ClipboardOwner& owner, int socket)
        : m_connection(connection)
        , m_owner(owner)
        , m_socket(socket)
        , m_reader(socket) {}

    /// Serves until the other end hangs up, the compositor has gone, or `stop` can be read.
    void serveLink(int stop = -1);

    /// Serves what has been taken until it is lost, the compositor has gone, or `stop` can be read.
    void serveRest(int stop = -1);

private:
    bool step(int socket, int stop);
    void answerRequests();

    WaylandConnection& m_connection;
    ClipboardOwner& m_owner;
    int m_socket;
    RequestReader m_reader;
};

} // namespace talvera
