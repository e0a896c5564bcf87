// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Server.h"
#include "linux/x11/typing/TargetBarrier.h"

#include <memory>

namespace talvera {

/// The X program that has the focus in a session whose keys come to the X server from elsewhere. One thread
/// at a time.
class FocusedXProgram {
public:
    explicit FocusedXProgram(const X11Server& server);

    /// Returns when it has read the keys that have reached the server, or hangs; at once while no X program
    /// has the focus.
    void awaitReading();

private:
    std::unique_ptr<X11Connection> m_connection;
    TargetBarrier m_barrier;
};

} // namespace talvera
