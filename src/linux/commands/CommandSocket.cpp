// SPDX-License-Identifier: MIT
#include "linux/commands/CommandSocket.h"

#include "linux/commands/commandReply.h"
#include "linux/support/processes.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QTimer>

#include <utility>

#include <sys/socket.h>
#include <unistd.h>

namespace talvera {

namespace {

/// Who is at the other end, as the kernel knows it.
std::optional<ucred> peerOf(const QLocalSocket& socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    const auto descriptor = static_cast<int>(socket.socketDescriptor());
    if (::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
        return std::nullopt;
    return peer;
}

bool isOwn(const QLocalSocket& socket) {
    const auto peer = peerOf(socket);
    return peer && peer->uid == ::geteuid();
}

/// An agent listens there, of another session that has this name, too.
bool isTaken(const QString& path) {
    QLocalSocket socket;
    socket.connectToServer(path);
    return socket.state() == QLocalSocket::ConnectedState;
}

} // namespace

CommandSocket::CommandSocket(const QStringList& paths, Obey obey)
    : m_obey(std::move(obey)) {
    for (const auto& path : paths) {
        auto server = std::make_unique<QLocalServer>();
        QObject::connect(server.get(), &QLocalServer::newConnection, server.get(),
                         [this, &server = *server] { take(server); });
        if (isTaken(path)) {
            m_failed << path;
            continue;
        }
        QLocalServer::removeServer(path); // what an agent that was killed has left
        if (server->listen(path))
            m_servers.push_back(std::move(server));
        else
            m_failed << path;
    }
}

CommandSocket::~CommandSocket() = default;

void CommandSocket::take(QLocalServer& server) {
    while (auto* peer = server.nextPendingConnection()) {
        QObject::connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
        if (!isOwn(*peer) || server.findChildren<QLocalSocket*>().size() > mostPeers) {
            peer->abort();
            continue;
        }
        peer->setReadBufferSize(longestRequest);
        QObject::connect(peer, &QLocalSocket::readyRead, peer, [this, peer] { answer(*peer); });
        QTimer::singleShot(patience, peer, [peer] { peer->abort(); });
        answer(*peer); // what was there before the connection was taken is told of by nothing
    }
}

void CommandSocket::answer(QLocalSocket& peer) const {
    if (!peer.canReadLine()) {
        if (peer.bytesAvailable() >= longestRequest)
            peer.abort();
        return;
    }
    QObject::disconnect(&peer, &QLocalSocket::readyRead, nullptr, nullptr); // one answer each
    const auto words = QString::fromUtf8(peer.readLine().trimmed()).split(u' ', Qt::SkipEmptyParts);
    const auto asking = peerOf(peer);
    const auto reply = m_obey({words, asking ? processStart(asking->pid) : std::nullopt});
    peer.write(encoded(reply));
    peer.disconnectFromServer(); // once all is written
}

} // namespace talvera
