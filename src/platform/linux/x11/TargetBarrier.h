// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Connection.h"

#include <chrono>
#include <cstdint>

namespace talvera {

/// Tells when the focused application has worked off the key events sent to it so far. Only then may the
/// meaning of a key be changed: applications look a key's symbol up when they read the event, not when it
/// was sent.
class TargetBarrier {
public:
    /// Needs a connection of its own: it throws away what else arrives there.
    explicit TargetBarrier(X11Connection& connection)
        : m_connection(connection) {}

    /// Returns when the application has caught up, or after `limit`. What was posted on other connections
    /// must have reached the server.
    void wait(std::chrono::milliseconds limit = DefaultLimit);

    static constexpr std::chrono::milliseconds DefaultLimit{3000};

private:
    using Deadline = std::chrono::steady_clock::time_point;

    bool answersPing(xcb_window_t window);
    void ping(xcb_window_t window, Deadline deadline);

    X11Connection& m_connection;
    std::uint32_t m_stamp = 0;
};

} // namespace talvera
