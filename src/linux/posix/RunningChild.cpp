// SPDX-License-Identifier: MIT
#include "linux/posix/RunningChild.h"

#include "platform/system/PlatformError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <ctime>
#include <span>

#include <poll.h>
#include <sys/socket.h>
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

constexpr int nothingToWatch = -1; // passed over by poll()

} // namespace

void ChildInput::sendOn() {
    while (m_state == State::Sending) {
        if (m_rest.isEmpty()) {
            ::shutdown(m_socket.get(), SHUT_WR); // our end stays, for what the child still has to say
            m_state = State::Sent;
            return;
        }
        const auto count = ::send(m_socket.get(), m_rest.data(), static_cast<std::size_t>(m_rest.size()),
                                  MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0)
            m_rest = m_rest.sliced(count);
        else if (errno == EAGAIN)
            return;
        else if (errno != EINTR)
            m_state = State::Refused;
    }
}

bool ChildInput::hearsReady() {
    char word = 0;
    return ::recv(m_socket.get(), &word, 1, MSG_DONTWAIT) == 1;
}

void RunningChild::Collector::drain() {
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

RunningChild::RunningChild(LaunchedChild child)
    : m_pid(child.pid)
    , m_handle(std::move(child.handle))
    , m_errors(std::move(child.standardError))
    , m_output(std::move(child.standardOutput)) {}

RunningChild::News RunningChild::wait(milliseconds atMost, std::initializer_list<int> calls,
                                      ChildInput* input) {
    constexpr std::size_t ownEvents = 3; // those before the calls
    std::array<pollfd, ownEvents + 3> events = {
        {{m_handle.get(), POLLIN, 0},
         {m_errors.descriptor(), POLLIN, 0},
         {input != nullptr ? input->descriptor() : nothingToWatch, POLLOUT, 0}}};
    auto count = ownEvents;
    for (const auto call : calls)
        events.at(count++) = {call, POLLIN, 0};
    if (::poll(events.data(), count, static_cast<int>(atMost.count())) <= 0)
        return {};
    m_errors.drain();
    if (events[0].revents != 0)
        return {true, nothingToWatch};
    if (events[2].revents != 0)
        input->sendOn();
    for (const auto& event : std::span(events).subspan(ownEvents, count - ownEvents)) {
        if (event.revents != 0)
            return {false, event.fd};
    }
    return {};
}

RunningChild::Ending RunningChild::awaitEnd(const PosixChildProcess::Limits& limits,
                                            std::initializer_list<int> calls, ChildInput* input) {
    Watchdog watchdog(m_pid, limits);
    for (;;) {
        const auto news = wait(watchdog.patience(), calls, input);
        if (news.hasEnded)
            return Ending::ByItself;
        watchdog.look();
        const bool isCalled = news.call != nothingToWatch;
        if (isCalled || watchdog.barks()) {
            kill();
            return isCalled ? Ending::Called : Ending::Hung;
        }
    }
}

void RunningChild::kill() {
    ::kill(-m_pid, SIGKILL);
    const auto givingUp = Clock::now() + patienceWithAKilledChild;
    while (Clock::now() < givingUp && !wait(patienceWithAKilledChild, {}).hasEnded) {
    }
}

ChildProcessResult RunningChild::result(Ending ending) {
    ChildProcessResult result;
    result.hung = ending == Ending::Hung;
    int status = 0;
    pid_t waited = -1;
    do {
        waited = ::waitpid(m_pid, &status, ending == Ending::ByItself ? 0 : WNOHANG);
    } while (waited < 0 && errno == EINTR);
    const auto code = errno;
    m_errors.drain();
    m_output.drain();
    result.standardError = m_errors.text();
    result.standardOutput = m_output.text();

    if (waited < 0)
        throw PlatformError(QStringLiteral("ChildProcess"), code, qt_error_string(code));
    if (waited == m_pid && WIFEXITED(status)) {
        result.status = WEXITSTATUS(status);
    } else {
        result.signalled = true;
        result.status = waited == m_pid ? WTERMSIG(status) : SIGKILL;
    }
    return result;
}

} // namespace talvera
