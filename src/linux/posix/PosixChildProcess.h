// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"
#include "platform/system/ChildProcess.h"

#include <chrono>

namespace talvera {

/// Programs of this machine, run with exec and without a shell.
///
/// The child inherits the environment and standard input as they are, and no other descriptor but that of a
/// private option. Its standard output is a pipe that is read at its end. It dies when the thread that
/// started it does, so a dead agent leaves no tool running. If it hangs, it is killed together with what it
/// has started.
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

    /// Kills every child that runs, and every one that is started later, so that all runs end soon. Any
    /// thread; for the end of the process.
    void endAll();

private:
    Limits m_limits;
    FileDescriptor m_ending; ///< an event that is set for good by endAll
};

} // namespace talvera
