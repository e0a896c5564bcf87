// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/ChildProcess.h"

#include <chrono>
#include <memory>

namespace talvera {

class PreparedChildren;

/// Programs of this machine, run with exec and without a shell.
///
/// The child inherits the environment and standard input as they are, and no other descriptor but those of
/// a private option and of the input that it waits for. Its standard output is a pipe that is read at its
/// end. It dies when the thread that started it does, so a dead agent leaves no tool running. If it hangs, it
/// is killed together with what it has started.
class PosixChildProcess final : public ChildProcess {
public:
    /// When a child counts as hung.
    struct Limits {
        std::chrono::milliseconds idle = std::chrono::seconds(60);  ///< without any processor time
        std::chrono::milliseconds total = std::chrono::minutes(30); ///< in all
    };

    PosixChildProcess()
        : PosixChildProcess(Limits{}) {}
    explicit PosixChildProcess(Limits limits);

    ChildProcessResult run(const ChildProcessRequest& request) override;

    /// Must be given its input, or go, before this object does.
    std::unique_ptr<PreparedChild> prepare(const ChildProcessRequest& request) override;

    /// Kills every child that runs, and every one that is started later, so that all runs end soon. Any
    /// thread; for the end of the process.
    void endAll();

private:
    Limits m_limits;
    std::shared_ptr<PreparedChildren> m_prepared;
};

} // namespace talvera
