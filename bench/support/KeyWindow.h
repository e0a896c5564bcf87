// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <chrono>
#include <memory>

namespace talvera::bench {

/// The plainest application: a window with the focus that gets keys and does nothing with them.
class KeyWindow {
public:
    /// Returns when the window has the focus. Throws std::runtime_error when it doesn't get it.
    KeyWindow();
    ~KeyWindow();
    KeyWindow(const KeyWindow&) = delete;
    KeyWindow& operator=(const KeyWindow&) = delete;

    /// Waits for the next key that goes down and answers when it came. Throws std::runtime_error when none
    /// comes.
    std::chrono::steady_clock::time_point awaitKeyDown();

private:
    XcbEvent awaitEvent(std::uint8_t type);

    std::unique_ptr<X11Connection> m_connection;
    xcb_window_t m_window = XCB_NONE;
};

} // namespace talvera::bench
