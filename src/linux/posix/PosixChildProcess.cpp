// SPDX-License-Identifier: MIT
#include "linux/posix/PosixChildProcess.h"

#include "linux/posix/ChildLauncher.h"
#include "platform/system/PlatformError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/wait.h>

namespace talvera {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// Of each of the two streams.
constexpr qsizetype mostBytes = 1 << 20;

/// How often within the idle limit we look whether the child has worked.
constexpr int looksPerIdleLimit = 6;

/// A killed child ends at once, unless the kernel can't let go of it.
constexpr milliseconds patienceWithAKilledChild = std::chrono::seconds(5);

/// Keeps what the child writes, up to a limit, and reads on beyond it.
class Collector {
public:
    explicit Collector(FileDescriptor pipe)
        : m_pipe(std::move(pipe)) {}

    /// -1 once nothing more can come.
    int descriptor() const { return m_pipe.get(); }

    /// Takes what is there.
    void drain() {
        std::array<char, 1 << 14> piece;
        while (m_pipe.isOpen()) {
            const auto count = ::read(m_pipe.get(), piece.data(), piece.size());
            if (count > 0)
                m_text.append(piece.data(), std::min<qsizetype>(count, mostBytes - m_text.size()));
            else if (count == 0)
                m_pipe.reset();
            else if (errno != EINTR)
                break; // nothing more for now
        }
        ::explicit_bzero(piece.data(), piece.size());
    }

    const QByteArray& text() const { return m_text; }

private:
    FileDescriptor m_pipe;
    QByteArray m_text;
};

/// Says when a child counts as hung.
class Watchdog {
public:
    Watchdog(pid_t child, const PosixChildProcess::Limits& limits)
        : m_limits(limits)
        , m_hasClock(::clock_getcpuclockid(child, &m_clock) == 0) {}

    /// Looks whether the child has worked since the last time.
    void look() {
        timespec used{};
        if (!m_hasClock || ::clock_gettime(m_clock, &used) != 0)
            return;
        if (used.tv_sec != m_used.tv_sec || used.tv_nsec != m_used.tv_nsec) {
            m_used = used;
            m_lastWork = Clock::now();
        }
    }

    bool barks() const {
        const auto now = Clock::now();
        return now - m_lastWork >= m_limits.idle || now - m_start >= m_limits.total;
    }

    /// Until the next look, rounded up.
    milliseconds patience() const {
        const auto now = Clock::now();
        const auto left =
            std::min<Clock::duration>({m_limits.idle / looksPerIdleLimit, m_lastWork + m_limits.idle - now,
                                       m_start + m_limits.total - now});
        return std::max(std::chrono::ceil<milliseconds>(left), milliseconds(1));
    }

private:
    PosixChildProcess::Limits m_limits;
    clockid_t m_clock{};
    bool m_hasClock;
    timespec m_used{};
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_lastWork = m_start;
};

enum class News { None, ChildEnded, EndAll };

constexpr int nothingToWatch = -1; // passed over by poll()

/// Waits for the child's end, for a piece of its standard error or for the end of everything.
News waitForNews(const LaunchedChild& child, Collector& errors, int ending, milliseconds atMost) {
    std::array<pollfd, 3> events = {
        {{child.handle.get(), POLLIN, 0}, {errors.descriptor(), POLLIN, 0}, {ending, POLLIN, 0}}};
    if (::poll(events.data(), events.size(), static_cast<int>(atMost.count())) <= 0)
        return News::None;
    errors.drain();
    if (events[0].revents != 0)
        return News::ChildEnded;
    return events[2].revents != 0 ? News::EndAll : News::None;
}

/// Ends the child and all that it has started.
void killAndAwait(const LaunchedChild& child, Collector& errors) {
    ::kill(-child.pid, SIGKILL);
    const auto givingUp = Clock::now() + patienceWithAKilledChild;
    while (Clock::now() < givingUp &&
           waitForNews(child, errors, nothingToWatch, patienceWithAKilledChild) != News::ChildEnded) {
    }
}

enum class Ending { ByItself, Hung, WithEverything };

Ending awaitEnd(const LaunchedChild& child, Collector& errors, int ending,
                const PosixChildProcess::Limits& limits) {
    Watchdog watchdog(child.pid, limits);
    for (;;) {
        const auto news = waitForNews(child, errors, ending, watchdog.patience());
        if (news == News::ChildEnded)
            return Ending::ByItself;
        watchdog.look();
        if (news == News::EndAll || watchdog.barks()) {
            killAndAwait(child, errors);
            return news == News::EndAll ? Ending::WithEverything : Ending::Hung;
        }
    }
}

} // namespace

PosixChildProcess::PosixChildProcess(Limits limits)
    : m_limits(limits)
    , m_ending(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void PosixChildProcess::endAll() {
    ::eventfd_write(m_ending.get(), 1);
}

ChildProcessResult PosixChildProcess::run(const ChildProcessRequest& request) {
    auto child = launchChild(request);
    Collector errors(std::move(child.standardError));
    Collector output(std::move(child.standardOutput));
    ChildProcessResult result;
    const auto ending = awaitEnd(child, errors, m_ending.get(), m_limits);
    result.hung = ending == Ending::Hung;

    int status = 0;
    pid_t waited = -1;
    do {
        waited = ::waitpid(child.pid, &status, ending == Ending::ByItself ? 0 : WNOHANG);
    } while (waited < 0 && errno == EINTR);
    errors.drain();
    output.drain();
    result.standardError = errors.text();
    result.standardOutput = output.text();

    if (waited < 0)
        throw PlatformError(QStringLiteral("ChildProcess"), errno, qt_error_string(errno));
    if (waited == child.pid && WIFEXITED(status)) {
        result.status = WEXITSTATUS(status);
    } else {
        result.signalled = true;
        result.status = waited == child.pid ? WTERMSIG(status) : SIGKILL;
    }
    return result;
}

} // namespace talvera
