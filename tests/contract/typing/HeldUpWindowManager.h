// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/FocusedWindow.h"
#include "linux/x11/server/X11Server.h"

#include <chrono>
#include <csignal>
#include <memory>
#include <stdexcept>
#include <thread>

namespace talvera::test {

/// As long as it lives the window manager does nothing, as on a busy machine: it gives no window the focus,
/// and doesn't tell of what has happened.
class HeldUpWindowManager {
public:
    HeldUpWindowManager() {
        m_process = processOfWindow(*m_connection, window());
        if (m_process <= 0)
            throw std::runtime_error("no window manager");
        ::kill(m_process, SIGSTOP);
    }
    ~HeldUpWindowManager() { ::kill(m_process, SIGCONT); }
    HeldUpWindowManager(const HeldUpWindowManager&) = delete;
    HeldUpWindowManager& operator=(const HeldUpWindowManager&) = delete;

    /// One of its own, which it gives the focus to while no other window should have it.
    xcb_window_t window() const { return rootsWindow("_NET_SUPPORTING_WM_CHECK"); }

    /// Waits until the window that it has called active last is gone; false if that doesn't happen in time.
    bool awaitEndOfActiveWindow() const {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (windowExists(*m_connection, rootsWindow("_NET_ACTIVE_WINDOW"))) {
            if (std::chrono::steady_clock::now() > deadline)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        return true;
    }

private:
    xcb_window_t rootsWindow(const char* property) const {
        const auto value = m_connection->property(m_connection->root(), m_connection->atom(property));
        return value.empty() ? xcb_window_t{XCB_NONE} : value.front();
    }

    const std::unique_ptr<X11Connection> m_connection = X11Server().connect();
    pid_t m_process = 0;
};

} // namespace talvera::test
