// SPDX-License-Identifier: MIT
#pragma once

#include "linux/language/ModelServer.h"

#include <QByteArray>

#include <functional>
#include <memory>

class QLocalSocket;
class QTcpSocket;

namespace talvera {

/// A connection to a server on this computer: no name is looked up, and no proxy comes in between. Main
/// thread only; it works from the event loop. Destroying it ends the connection.
class ServerConnection {
public:
    /// How much comes at once at most: a server that sends without end is held up, and fills no memory.
    static constexpr qint64 readAhead = 1 << 16;

    /// Each of the three may destroy the connection.
    struct Listener {
        std::function<void()> onConnected;
        std::function<void()> onReadable;
        std::function<void()> onEnded; ///< or it could not be made
    };

    ServerConnection(const ServerAddress& address, const Listener& listener);
    ~ServerConnection();
    ServerConnection(const ServerConnection&) = delete;
    ServerConnection& operator=(const ServerConnection&) = delete;

    /// Connects; to be called once. It may be told from within that this failed.
    void open();

    void write(const QByteArray& bytes);

    /// The next bytes that have come; empty for none.
    QByteArray read();

private:
    struct LaterDeleted {
        template <typename Socket>
        void operator()(Socket* socket) const;
    };

    template <typename Socket>
    static void follow(Socket& socket, const Listener& listener);

    const ServerAddress m_address;
    std::unique_ptr<QLocalSocket, LaterDeleted> m_local; ///< one of the two
    std::unique_ptr<QTcpSocket, LaterDeleted> m_network;
};

} // namespace talvera
