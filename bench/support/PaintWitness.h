// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include <sys/types.h>
#include <xcb/damage.h>

namespace talvera::bench {

/// Sees when windows are painted for the first time. Any thread.
class PaintWitness {
public:
    using Clock = std::chrono::steady_clock;

    static constexpr std::chrono::seconds patience{20};

    PaintWitness();
    ~PaintWitness();
    PaintWitness(const PaintWitness&) = delete;
    PaintWitness& operator=(const PaintWitness&) = delete;

    void forget();

    /// Waits for the first paint since forget() of a window that has come up since, and answers when that
    /// was. Throws std::runtime_error when there is none.
    Clock::time_point await();

    /// Waits for the first paint since forget() of a window of that process, and answers when that was. The
    /// frame that a window manager draws around it doesn't count. Throws likewise.
    Clock::time_point awaitOf(pid_t process);

private:
    void run();
    void watch(xcb_window_t window);
    void onPainted(xcb_window_t window);
    pid_t processOf(xcb_window_t window);

    std::unique_ptr<X11Connection> m_connection;
    std::uint8_t m_damageEvent = 0;
    std::map<xcb_window_t, xcb_damage_damage_t> m_watched; ///< those that are blank yet
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<Clock::time_point> m_painted;
    std::map<pid_t, Clock::time_point> m_paintedBy;
    std::atomic<bool> m_isEnding = false;
    std::thread m_thread;
};

} // namespace talvera::bench
