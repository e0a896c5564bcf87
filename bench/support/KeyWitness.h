// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/X11InputDevices.h"
#include "linux/x11/server/XKeycode.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace talvera::bench {

/// Sees every key of the X server go down and up, the user's and those that programs post, at the moment at
/// which the server hands them to the focused application. Any thread.
class KeyWitness {
public:
    using Clock = std::chrono::steady_clock;

    struct Key {
        Clock::time_point at;
        XKeycode key;
        bool isDown;
        bool isPosted; ///< by a program
    };

    static constexpr std::chrono::seconds patience{60};

    KeyWitness();
    ~KeyWitness();
    KeyWitness(const KeyWitness&) = delete;
    KeyWitness& operator=(const KeyWitness&) = delete;

    void forget();
    std::vector<Key> seen() const;

    /// Waits for the first key since forget() of which this holds, and answers it. Throws std::runtime_error
    /// when none comes.
    Key await(const std::function<bool(const Key&)>& isWanted);

    /// Waits until no key has moved for that long.
    void awaitQuiet(std::chrono::milliseconds length);

private:
    void run();

    std::unique_ptr<X11Connection> m_connection;
    X11InputDevices m_devices;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Key> m_keys;
    std::atomic<bool> m_isEnding = false;
    std::thread m_thread;
};

} // namespace talvera::bench
