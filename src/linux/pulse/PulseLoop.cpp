// SPDX-License-Identifier: MIT
#include "linux/pulse/PulseLoop.h"

#include <pulse/rtclock.h>

#include <algorithm>
#include <new>
#include <utility>

namespace talvera {

void PulseLoop::Free::operator()(pa_threaded_mainloop* loop) const {
    pa_threaded_mainloop_free(loop);
}

PulseLoop::PulseLoop()
    : m_loop(pa_threaded_mainloop_new()) {
    if (!m_loop)
        throw std::bad_alloc();
    pa_threaded_mainloop_set_name(m_loop.get(), "audio");
    if (pa_threaded_mainloop_start(m_loop.get()) < 0)
        throw std::bad_alloc();
    m_running = true;
}

PulseLoop::~PulseLoop() {
    stop();
}

void PulseLoop::stop() {
    if (std::exchange(m_running, false))
        pa_threaded_mainloop_stop(m_loop.get());
}

pa_mainloop_api* PulseLoop::api() const {
    return pa_threaded_mainloop_get_api(m_loop.get());
}

void PulseLoop::signal() {
    pa_threaded_mainloop_signal(m_loop.get(), 0);
}

void PulseLoop::wait() {
    pa_threaded_mainloop_wait(m_loop.get());
}

bool PulseLoop::waitUntil(pa_context* context, Duration limit, const std::function<bool()>& done) {
    bool late = false;
    const Timer timer(*this, context, limit, [this, &late] {
        late = true;
        signal();
    });
    while (!done() && !late)
        wait();
    return done();
}

PulseLoop::Lock::Lock(PulseLoop& loop)
    : m_loop(loop) {
    pa_threaded_mainloop_lock(m_loop.m_loop.get());
}

PulseLoop::Lock::~Lock() {
    pa_threaded_mainloop_unlock(m_loop.m_loop.get());
}

PulseLoop::Timer::Timer(PulseLoop& loop, pa_context* context, Duration delay, std::function<void()> expired)
    : m_loop(loop)
    , m_expired(std::move(expired)) {
    const auto microseconds = std::chrono::ceil<std::chrono::microseconds>(delay).count();
    m_event = pa_context_rttime_new(
        context, pa_rtclock_now() + static_cast<pa_usec_t>(std::max<std::int64_t>(microseconds, 0)),
        [](pa_mainloop_api* api, pa_time_event* event, const timeval*, void* self) {
            auto* const timer = static_cast<Timer*>(self);
            api->time_restart(event, nullptr);
            const auto call = std::exchange(timer->m_expired, nullptr); // may destroy the timer
            if (call)
                call();
        },
        this);
    if (!m_event)
        throw std::bad_alloc();
}

PulseLoop::Timer::~Timer() {
    m_loop.api()->time_free(m_event);
}

} // namespace talvera
