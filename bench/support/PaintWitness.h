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

#include <xcb/damage.h>

namespace talvera::bench {

/// Sees when a window that has just come up is painted for the first time. Any thread.
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

private:
    void run();
    void onMapped(xcb_window_t window);
    void onPainted(xcb_window_t window);

    std::unique_ptr<X11Connection> m_connection;
    std::uint8_t m_damageEvent = 0;
    std::map<xcb_window_t, xcb_damage_damage_t> m_watched; ///< those that have come up and are blank yet
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<Clock::time_point> m_painted;
    std::atomic<bool> m_isEnding = false;
    std::thread m_thread;
};

} // namespace talvera::bench
