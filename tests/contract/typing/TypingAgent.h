// SPDX-License-Identifier: MIT
#pragma once

#include <cstdio>
#include <string>
#include <sys/types.h>

namespace talvera::test {

/// The program x11-agent (agent.cpp) at work.
class TypingAgent {
public:
    TypingAgent();
    ~TypingAgent();
    TypingAgent(const TypingAgent&) = delete;
    TypingAgent& operator=(const TypingAgent&) = delete;

    /// Has it do one thing and waits until that is done. Throws std::runtime_error when it has ended.
    void tell(const std::string& command);

    /// Ends it without a chance to tidy up. When this returns it is gone.
    void kill();

    void stop() const;       ///< it stalls
    void goOn() const;       ///< it works again
    pid_t companion() const; ///< the process of its companion; 0 if it has none

private:
    void awaitDone();

    pid_t m_process = 0;
    std::FILE* m_commands = nullptr;
    std::FILE* m_answers = nullptr;
};

/// Waits until a process that need not be a child of ours has ended; false when it doesn't in time.
bool awaitEnd(pid_t process);

} // namespace talvera::test
