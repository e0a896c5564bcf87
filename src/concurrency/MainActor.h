// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/CancellationToken.h"
#include "concurrency/Task.h"
#include "concurrency/Time.h"

#include <coroutine>
#include <cstdint>
#include <functional>

namespace talvera {

/// The one thread of logic: presses, pipeline, routing, settings and views all run here, one step at a time.
/// It also owns time. In the product it stands on the Qt event loop, in tests on a virtual clock.
class MainActor {
public:
    using TimerId = std::uint64_t;
    class Sleep;

    MainActor() = default;
    MainActor(const MainActor&) = delete;
    MainActor& operator=(const MainActor&) = delete;
    virtual ~MainActor() = default;

    /// The steady clock.
    virtual Instant now() const = 0;

    /// The calendar.
    virtual WallTime date() const = 0;

    /// Runs `work` on the main thread in a later turn, behind everything posted before. Any thread.
    virtual void post(std::function<void()> work) = 0;

    /// Runs `work` once on the main thread when `delay` has passed. Main thread only.
    virtual TimerId startTimer(Duration delay, std::function<void()> work) = 0;

    /// Forgets a timer; unknown and fired ones are fine. Main thread only.
    virtual void cancelTimer(TimerId timer) = 0;

    /// Holds the main actor until `work` has ended: no other task, timer or posted work starts meanwhile, but
    /// windows go on painting. `work` may run on another thread; what it throws is thrown here.
    virtual void block(const std::function<void()>& work) = 0;

    /// Holds the main actor for a fixed, short time.
    virtual void blockFor(Duration duration) = 0;

    /// Suspends the awaiting coroutine for `duration`, or until `token` is cancelled.
    Sleep sleep(Duration duration, CancellationToken token = {});

    /// Starts an unstructured task in a later turn: `coroutine` is a callable that returns Task<void>. It is
    /// kept alive until the task has ended, so a capturing lambda is safe here.
    template <typename Coroutine>
    void start(Coroutine coroutine) {
        post([coroutine = std::move(coroutine)]() mutable { runDetached(std::move(coroutine)); });
    }

private:
    template <typename Coroutine>
    static Task<void> runDetached(Coroutine coroutine) {
        co_await coroutine();
    }
};

/// What MainActor::sleep returns, for co_await.
class MainActor::Sleep {
public:
    Sleep(MainActor& actor, Duration duration, CancellationToken token)
        : m_actor(actor)
        , m_duration(duration)
        , m_token(std::move(token)) {}

    bool await_ready() const { return m_token.isCancelled(); }

    void await_suspend(std::coroutine_handle<> waiting) {
        const auto timer = m_actor.startTimer(m_duration, [waiting, token = m_token] {
            token.onCancel(nullptr);
            waiting.resume();
        });
        m_token.onCancel([&actor = m_actor, timer, waiting] {
            actor.cancelTimer(timer);
            actor.post([waiting] { waiting.resume(); });
        });
    }

    void await_resume() const {}

private:
    MainActor& m_actor;
    Duration m_duration;
    CancellationToken m_token;
};

inline MainActor::Sleep MainActor::sleep(Duration duration, CancellationToken token) {
    return {*this, duration, std::move(token)};
}

} // namespace talvera
