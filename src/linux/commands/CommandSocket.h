// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QLocalServer;
class QLocalSocket;

namespace talvera {

/// What a process of this user asks the agent.
struct CommandRequest {
    QStringList words;
    /// When it was started, since the machine was; nothing when the kernel doesn't tell.
    std::optional<std::chrono::milliseconds> begun{};
};

/// What it is told.
struct CommandReply {
    bool isDone = true; ///< false: the agent doesn't know what that is
    QString text{};
};

/// Where other processes of the user reach the agent of their session: sockets in a private directory, one
/// for each name that the session has. A process of another user is turned away, and so is one that sends too
/// much or is silent for long. Works from the event loop. Main thread only.
class CommandSocket {
public:
    using Obey = std::function<CommandReply(const CommandRequest&)>;

    /// `paths` as commandSocketPaths() tells them. What an agent that has ended left there is replaced.
    CommandSocket(const QStringList& paths, Obey obey);
    ~CommandSocket();
    CommandSocket(const CommandSocket&) = delete;
    CommandSocket& operator=(const CommandSocket&) = delete;

    /// The paths where none could be made, or where another agent listens.
    const QStringList& failed() const { return m_failed; }

    static constexpr int mostPeers = 16;           ///< at a time, on each socket
    static constexpr qint64 longestRequest = 1000; // bytes
    static constexpr std::chrono::seconds patience{5};

private:
    void take(QLocalServer& server);
    void answer(QLocalSocket& peer) const;

    const Obey m_obey;
    std::vector<std::unique_ptr<QLocalServer>> m_servers;
    QStringList m_failed;
};

} // namespace talvera
