// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <set>
#include <sys/types.h>

namespace talvera {

/// Tells when the applications that were typed into have worked off the key events sent to them so far. Only
/// then may the meaning of a key be changed: applications look a key's symbol up when they read the event,
/// not when it was sent. With an input method, keys may make a detour: from the application to the method and
/// back, and only then does the application look.
class TargetBarrier {
public:
    /// Needs a connection of its own: it throws away what else arrives there.
    explicit TargetBarrier(X11Connection& connection)
        : m_connection(connection) {}

    /// Typing begins now, into the focused window.
    void begin();

    /// Returns when the focused application has caught up, and the one that had the focus when this was last
    /// called; or after `limit`, with false. What was posted on other connections must have reached the
    /// server.
    bool wait(std::chrono::milliseconds limit);

    /// Returns when the focused application has nothing left to do, or after `limit`, with false. For after
    /// `wait`: a program may have taken keys from the server, and tell so, but keep them for later. Without a
    /// way to know it returns at once.
    bool waitForRest(std::chrono::milliseconds limit);

private:
    using Deadline = std::chrono::steady_clock::time_point;

    bool waitFor(xcb_window_t window, Deadline deadline);
    bool waitForReading(xcb_window_t window, Deadline deadline);
    bool waitForProcess(pid_t process, Deadline deadline);
    bool waitForReturn(xcb_window_t window, Deadline deadline);
    const std::set<pid_t>& methodProcesses();
    bool isAtRest(const std::set<pid_t>& threads);
    bool answersPing(xcb_window_t window);
    bool ping(xcb_window_t window, Deadline deadline);

    X11Connection& m_connection;
    xcb_window_t m_formerTarget = XCB_NONE;
    std::optional<std::set<pid_t>> m_methodProcesses; ///< once it was asked for
    std::uint32_t m_stamp = 0;
};

} // namespace talvera
