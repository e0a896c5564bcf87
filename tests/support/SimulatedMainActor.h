// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/BackgroundPool.h"
#include "concurrency/MainActor.h"
#include "concurrency/SerialQueue.h"

#include <cstdint>
#include <deque>
#include <map>
#include <utility>

namespace talvera::test {

/// A main actor whose clock moves only when nothing is left to do at the present moment. It runs everything
/// on the calling thread, in the same order every time.
///
/// Work of the simulated queues below runs whole when its turn comes, on a clock of its own that starts at
/// that moment: what it sleeps delays its end, and what is queued behind it, but not the main actor.
class SimulatedMainActor final : public MainActor {
public:
    SimulatedMainActor();
    ~SimulatedMainActor() override;

    /// In a job of a simulated queue, the job's own time.
    Instant now() const override;
    WallTime date() const override;
    void post(std::function<void()> work) override;
    TimerId startTimer(Duration delay, std::function<void()> work) override;
    void cancelTimer(TimerId timer) override;
    void block(const std::function<void()>& work) override;
    void blockFor(Duration duration) override;

    /// Runs all that is posted and due up to and including this moment, and leaves the clock there.
    void runUntil(Instant moment);
    /// The same, counted from now.
    void advance(Duration duration) { runUntil(m_now + duration); }
    /// Runs what is posted now, without moving the clock.
    void settle();
    /// Runs until nothing is posted and no timer is left; false if that took more than `limit` of virtual
    /// time.
    bool runToRest(Duration limit);
    /// The moment of the earliest timer, if there is one.
    bool hasTimers() const { return !m_timers.empty(); }

    /// Virtual seconds since the start.
    double elapsed() const { return toSeconds(now() - Instant{}); }

    /// Sets the calendar that belongs to the start of the steady clock.
    void setStartDate(WallTime date) { m_startDate = date; }

private:
    friend class SimulatedSerialQueue;
    friend class SimulatedBackgroundPool;

    /// Runs `job` on a clock of its own; answers the moment at which it ended.
    Instant runOffMain(const std::function<void()>& job);
    void postAt(Instant moment, std::function<void()> work);

    Instant m_now{};
    bool m_offMain = false;
    Instant m_offMainNow{};
    WallTime m_startDate;
    std::deque<std::function<void()>> m_posted;
    std::map<std::pair<Instant, TimerId>, std::function<void()>> m_timers;
    std::map<TimerId, Instant> m_dueOf;
    TimerId m_nextTimer = 1;
};

/// A serial queue on the simulated clock.
class SimulatedSerialQueue final : public SerialQueue {
public:
    explicit SimulatedSerialQueue(SimulatedMainActor& actor)
        : m_actor(actor) {}

    void async(std::function<void()> job) override;
    void sleep(Duration duration) override;

    /// No job runs or waits.
    bool isIdle() const { return m_jobs.empty() && !m_running; }

private:
    void runNext();

    SimulatedMainActor& m_actor;
    std::deque<std::function<void()>> m_jobs;
    bool m_running = false;
};

/// A background pool on the simulated clock. `sleep` is how a simulated blocking call takes its time.
class SimulatedBackgroundPool final : public BackgroundPool {
public:
    explicit SimulatedBackgroundPool(SimulatedMainActor& actor)
        : m_actor(actor) {}

    void run(std::function<void()> work, std::function<void()> done) override;

private:
    SimulatedMainActor& m_actor;
};

} // namespace talvera::test
