// SPDX-License-Identifier: MIT
#pragma once

#include "linux/posix/PosixChildProcess.h"
#include "linux/support/ChildLauncher.h"

#include <QByteArray>
#include <QByteArrayView>

#include <chrono>
#include <initializer_list>

namespace talvera {

/// What a child reads when it is ready: bytes through a socket, and then their end. The child says through
/// the same socket that it is ready. One thread.
class ChildInput {
public:
    /// The bytes must outlive it.
    ChildInput(FileDescriptor socket, QByteArrayView bytes)
        : m_socket(std::move(socket))
        , m_rest(bytes) {}

    /// -1 when nothing is left to send, or nobody is left to take it.
    int descriptor() const { return m_state == State::Sending ? m_socket.get() : -1; }
    /// Sends what the socket takes now.
    void sendOn();
    bool isSent() const { return m_state == State::Sent; }

    /// Whether the child has just said that it is ready; asked again, it has not.
    bool hearsReady();

private:
    enum class State { Sending, Sent, Refused };

    FileDescriptor m_socket;
    QByteArrayView m_rest;
    State m_state = State::Sending;
};

/// A child from its launch to its end, and what it writes meanwhile. It must be brought to its end. One
/// thread.
class RunningChild {
public:
    enum class Ending { ByItself, Hung, Called };

    /// What has ended a wait; neither when only time has passed.
    struct News {
        bool hasEnded = false; ///< the child has
        int call = -1;         ///< the descriptor that can be read
    };

    explicit RunningChild(LaunchedChild child);

    /// Waits until the child ends or one of these descriptors, at most three, can be read; those below 0 are
    /// passed over. A negative time is no limit.
    News wait(std::chrono::milliseconds atMost, std::initializer_list<int> calls,
              ChildInput* input = nullptr);

    /// Waits for the child's end, and brings it about when the child hangs or one of the descriptors can be
    /// read. The limits begin now.
    Ending awaitEnd(const PosixChildProcess::Limits& limits, std::initializer_list<int> calls,
                    ChildInput* input = nullptr);

    /// Ends the child and all that it has started.
    void kill();

    /// What has become of the child, and all that it has written. Throws PlatformError.
    ChildProcessResult result(Ending ending);

private:
    /// Keeps what the child writes, up to a limit, and reads on beyond it.
    class Collector {
    public:
        explicit Collector(FileDescriptor pipe)
            : m_pipe(std::move(pipe)) {}

        /// -1 once nothing more can come.
        int descriptor() const { return m_pipe.get(); }
        /// Takes what is there.
        void drain();
        const QByteArray& text() const { return m_text; }

    private:
        FileDescriptor m_pipe;
        QByteArray m_text;
    };

    pid_t m_pid;
    FileDescriptor m_handle;
    Collector m_errors;
    Collector m_output;
};

} // namespace talvera
