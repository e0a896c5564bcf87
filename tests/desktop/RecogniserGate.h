// SPDX-License-Identifier: MIT
#pragma once

#include "InstalledCopy.h"

#include <QString>

#include <sys/types.h>

namespace talvera::test {

/// The program installed once more, with a gate before the recogniser: each run but that of the agent's own
/// warm-up waits there until the test lets it in, so that things can happen during a recognition however
/// quick it is. Behind the gate it is the real one. Throws std::runtime_error when what it waits for doesn't
/// come in time.
class RecogniserGate {
public:
    RecogniserGate();
    ~RecogniserGate();
    RecogniserGate(const RecogniserGate&) = delete;
    RecogniserGate& operator=(const RecogniserGate&) = delete;

    /// The agent whose recogniser meets the gate.
    QString program() const { return m_copy.program(); }

    /// Waits until a run has come to the gate. Answers its process, which stays the same behind the gate.
    pid_t awaitRun();
    /// Lets the run that waits in, or else the next one.
    void letIn();

private:
    InstalledCopy m_copy;
    int m_arrivals = -1;
    int m_permits = -1;
};

} // namespace talvera::test
