// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ChildProcess.h"

#include <chrono>

namespace talvera {

/// Programs of this machine, run with exec and without a shell.
///
/// The child inherits the environment and standard input as they are, and no other descriptor. Its standard
/// output is a pipe that stays open to its end and is never read. It dies when the thread that started it
/// does, so a dead agent leaves no tool running. If it hangs, it is killed together with what it has started.
class PosixChildProcess final : public ChildProcess {
public:
    /// When a child counts as hung.
    struct Limits {
        std::chrono::milliseconds idle = std::chrono::seconds(60);  ///< without any processor time
        std::chrono::milliseconds total = std::chrono::minutes(30); ///< in all
    };

    PosixChildProcess() = default;
    explicit PosixChildProcess(Limits limits)
        : m_limits(limits) {}

    ChildProcessResult run(const ChildProcessRequest& request) override;

private:
    Limits m_limits;
};

} // namespace talvera
