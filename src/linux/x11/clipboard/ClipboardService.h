// SPDX-License-Identifier: MIT
#pragma once

#include "linux/clipboard/ClipboardLink.h"
#include "linux/x11/clipboard/SelectionOwner.h"

#include <functional>

namespace talvera {

/// Holds the clipboard for the agent at the other end of a socket.
class ClipboardService {
public:
    /// `connection` is this object's alone.
    ClipboardService(X11Connection& connection, int socket)
        : m_connection(connection)
        , m_socket(socket)
        , m_reader(socket)
        , m_owner(connection) {}

    /// Serves until the other end hangs up, the X server is gone, or `stop` can be read. True when it was the
    /// other end.
    bool serveLink(int stop = -1);

    /// Serves what has been taken until it is lost, the X server is gone, or `stop` can be read.
    void serveRest(int stop = -1);

    /// Gives the text to the session's clipboard manager, and what is still on its way to whom it was
    /// promised. False when there is no manager, or it doesn't take it.
    bool handOver();

private:
    /// Waits for the next event and handles it. False when `stop` can be read or the X server is gone.
    bool step(int socket, int stop, std::optional<SelectionOwner::Clock::time_point> limit);
    void answerRequests();

    X11Connection& m_connection;
    int m_socket;
    RequestReader m_reader;
    SelectionOwner m_owner;
};

} // namespace talvera
