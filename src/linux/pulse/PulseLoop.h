// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"

#include <pulse/context.h>
#include <pulse/thread-mainloop.h>

#include <functional>
#include <memory>

namespace talvera {

/// The thread that talks to the sound server, and its lock. Callbacks of the sound library run on this thread
/// with the lock held; all other code takes a Lock before touching an object of the library or their own
/// state that callbacks share. Between messages the thread sleeps in the kernel, without any time-out.
class PulseLoop {
public:
    class Lock;
    class Timer;

    PulseLoop();
    PulseLoop(const PulseLoop&) = delete;
    PulseLoop& operator=(const PulseLoop&) = delete;
    ~PulseLoop();

    /// Ends the thread; no callback runs afterwards. Without the lock.
    void stop();

    pa_mainloop_api* api() const;

    /// Wakes wait(). With the lock.
    void signal();

    /// Gives the lock up until signal() is called. With the lock, from another thread.
    void wait();

    /// Waits until `done` holds, looking after each signal(), but at most `limit`; answers done(). With the
    /// lock, from another thread. `context` only lends its clock.
    bool waitUntil(pa_context* context, Duration limit, const std::function<bool()>& done);

private:
    struct Free {
        void operator()(pa_threaded_mainloop* loop) const;
    };
    std::unique_ptr<pa_threaded_mainloop, Free> m_loop;
    bool m_running = false;
};

/// Holds the loop's lock for a scope.
class PulseLoop::Lock {
public:
    explicit Lock(PulseLoop& loop);
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock();

private:
    PulseLoop& m_loop;
};

/// Calls `expired` once on the loop's thread when `delay` has passed, unless it is destroyed before. Made and
/// destroyed with the lock held.
class PulseLoop::Timer {
public:
    Timer(PulseLoop& loop, pa_context* context, Duration delay, std::function<void()> expired);
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer();

private:
    PulseLoop& m_loop;
    std::function<void()> m_expired;
    pa_time_event* m_event;
};

} // namespace talvera
