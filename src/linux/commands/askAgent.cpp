// SPDX-License-Identifier: MIT
#include "linux/commands/askAgent.h"

#include "linux/commands/commandReply.h"

#include <QDeadlineTimer>
#include <QLocalSocket>

namespace talvera {

namespace {

bool connectToAgent(QLocalSocket& socket, const QStringList& paths, const QDeadlineTimer& deadline) {
    for (const auto& path : paths) {
        socket.connectToServer(path);
        if (socket.waitForConnected(static_cast<int>(deadline.remainingTime())))
            return true;
    }
    return false;
}

/// All that comes until the other end hangs up.
QByteArray readToEnd(QLocalSocket& socket, const QDeadlineTimer& deadline) {
    auto bytes = socket.readAll();
    while (socket.waitForReadyRead(static_cast<int>(deadline.remainingTime())))
        bytes += socket.readAll();
    return bytes + socket.readAll();
}

} // namespace

std::variant<CommandReply, AgentSilence> askAgent(const QStringList& paths, const QStringList& words,
                                                  std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    QLocalSocket socket;
    if (!connectToAgent(socket, paths, deadline))
        return AgentSilence::NotRunning;
    socket.write(words.join(u' ').toUtf8() + '\n');
    const auto bytes = readToEnd(socket, deadline);
    if (socket.state() != QLocalSocket::UnconnectedState) // part of a reply
        return AgentSilence::NoAnswer;
    if (const auto reply = decodedReply(bytes))
        return *reply;
    return AgentSilence::NoAnswer;
}

} // namespace talvera
