// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <chrono>
#include <cstdint>

namespace talvera {

/// Tells when the applications that were typed into have worked off the key events sent to them so far. Only
/// then may the meaning of a key be changed: applications look a key's symbol up when they read the event,
/// not when it was sent.
class TargetBarrier {
public:
    /// Needs a connection of its own: it throws away what else arrives there.
    explicit TargetBarrier(X11Connection& connection)
        : m_connection(connection) {}

    /// Typing begins now, into the focused window.
    void begin() { m_formerTarget = XCB_NONE; }

    /// Returns when the focused application has caught up, and the one that had the focus when this was last
    /// called; or after `limit`, with false. What was posted on other connections must have reached the
    /// server.
    bool wait(std::chrono::milliseconds limit);

private:
    using Deadline = std::chrono::steady_clock::time_point;

    bool waitFor(xcb_window_t window, Deadline deadline);
    bool answersPing(xcb_window_t window);
    bool ping(xcb_window_t window, Deadline deadline);

    X11Connection& m_connection;
    xcb_window_t m_formerTarget = XCB_NONE;
    std::uint32_t m_stamp = 0;
};

} // namespace talvera
