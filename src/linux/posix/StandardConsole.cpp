// SPDX-License-Identifier: MIT
#include "linux/posix/StandardConsole.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>
#include <mutex>

#include <poll.h>
#include <unistd.h>

namespace talvera {

namespace {

/// Keeps SIGPIPE from ending the program when the reader of a stream has gone.
class BrokenPipeShield {
public:
    BrokenPipeShield() {
        sigemptyset(&m_brokenPipe);
        sigaddset(&m_brokenPipe, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &m_brokenPipe, &m_before);
    }
    BrokenPipeShield(const BrokenPipeShield&) = delete;
    BrokenPipeShield& operator=(const BrokenPipeShield&) = delete;
    ~BrokenPipeShield() {
        constexpr timespec atOnce{0, 0};
        if (!m_wasPending) // then it was ours
            sigtimedwait(&m_brokenPipe, nullptr, &atOnce);
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }

private:
    sigset_t m_brokenPipe{};
    sigset_t m_before{};
    bool m_wasPending = false;
};

/// A pipe that says so takes as much as PIPE_BUF without waiting.
bool takesMore(int stream) {
    pollfd room{stream, POLLOUT, 0};
    return ::poll(&room, 1, 0) > 0;
}

void writeLine(int stream, const QString& line) {
    static std::mutex one; // two that find room for one would wait
    const std::scoped_lock lock(one);
    const BrokenPipeShield shield;
    const auto bytes = line.toUtf8() + '\n';
    qsizetype written = 0;
    while (written < bytes.size()) {
        const auto piece = std::min<qsizetype>(bytes.size() - written, PIPE_BUF);
        if (!takesMore(stream))
            return;
        const auto count = ::write(stream, bytes.constData() + written, static_cast<size_t>(piece));
        if (count < 0 && errno != EINTR)
            return;
        written += std::max<ssize_t>(count, 0);
    }
}

} // namespace

void StandardConsole::print(const QString& line) {
    writeLine(STDOUT_FILENO, line);
}

void StandardConsole::log(const QString& line) {
    writeLine(STDERR_FILENO, line);
}

} // namespace talvera
