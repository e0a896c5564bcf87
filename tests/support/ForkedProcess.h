// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace talvera::test {

/// A process of its own for what can't be tried in the test's: to be killed, or to be there twice. What it
/// has to say are single characters.
class ForkedProcess {
public:
    /// Runs `work(say)` in the new process. It ends with status 0 when that returns, without the test's
    /// clean-up.
    template <typename Work>
    explicit ForkedProcess(Work work) {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) != 0)
            std::abort();
        m_pid = ::fork();
        if (m_pid == 0) {
            work([&ends](char word) {
                if (::write(ends[1], &word, 1) != 1)
                    ::_exit(1);
            });
            ::_exit(0);
        }
        ::close(ends[1]);
        m_hears = ends[0];
    }

    ForkedProcess(ForkedProcess&& other) noexcept
        : m_pid(std::exchange(other.m_pid, -1))
        , m_hears(std::exchange(other.m_hears, -1)) {}
    ForkedProcess& operator=(ForkedProcess&&) = delete;

    ~ForkedProcess() {
        if (m_pid > 0)
            killAndWait();
        ::close(m_hears);
    }

    pid_t pid() const { return m_pid; }

    /// The next character that it says; 0 once it has ended.
    char hear() const {
        char word = 0;
        return ::read(m_hears, &word, 1) == 1 ? word : '\0';
    }

    void kill(int signal) const { ::kill(m_pid, signal); }

    /// Its wait status.
    int wait() {
        int status = 0;
        ::waitpid(std::exchange(m_pid, -1), &status, 0);
        return status;
    }

    void killAndWait() {
        kill(SIGKILL);
        wait();
    }

    /// For its work: until it is killed.
    static void stay() {
        for (;;)
            ::pause();
    }

private:
    pid_t m_pid = -1;
    int m_hears = -1;
};

} // namespace talvera::test
