// SPDX-License-Identifier: MIT
#pragma once

#include "SimulatedThread.h"
#include "concurrency/BackgroundPool.h"
#include "concurrency/MainActor.h"
#include "concurrency/SerialQueue.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace talvera::test {

/// A main actor whose clock moves only when nothing is left to do at the present moment. It runs everything
/// on the calling thread, in the same order every time.
///
/// Jobs of the simulated queues below take their turns with it: while one sleeps, the main actor goes on, and
/// while the main actor is held, they do. So does what happens outside of the program.
class SimulatedMainActor final : public MainActor {
public:
    /// The clock begins at `start`, as when the machine has been on for that long.
    explicit SimulatedMainActor(Instant start = {});
    ~SimulatedMainActor() override;

    Instant now() const override { return m_now; }
    WallTime date() const override;
    void post(std::function<void()> work) override;
    TimerId startTimer(Duration delay, std::function<void()> work) override;
    void cancelTimer(TimerId timer) override;
    void block(const std::function<void()>& work) override;
    /// In a job of a simulated queue, the job alone is held.
    void blockFor(Duration duration) override;

    /// It waits in blockFor() while other things go on.
    bool isHeld() const { return m_isHeld; }

    /// Runs `happening` when `delay` has passed, also while the main actor is held: a key, a user, another
    /// program. What it has to say to the program it posts.
    void startOutside(Duration delay, std::function<void()> happening);

    /// Runs `job` beside the main actor, from now on.
    void startJob(std::function<void()> job);

    /// Runs all that is posted and due up to and including this moment, and leaves the clock there.
    void runUntil(Instant moment);
    /// The same, counted from now.
    void advance(Duration duration) { runUntil(m_now + duration); }
    /// Runs what is posted now, without moving the clock.
    void settle();
    /// Runs until nothing is posted and no timer is left; false if that took more than `limit` of virtual
    /// time.
    bool runToRest(Duration limit);
    bool hasTimers() const { return !m_timers.empty() || !m_outside.empty(); }

    /// Virtual seconds since the start.
    double elapsed() const { return toSeconds(m_now - Instant{}); }

    /// Sets the calendar that belongs to the beginning of the steady clock.
    void setStartDate(WallTime date) { m_startDate = date; }
    WallTime startDate() const { return m_startDate; }

private:
    using Timers = std::map<std::pair<Instant, TimerId>, std::function<void()>>;

    void resume(SimulatedThread& job);
    bool runNextOutside(Instant until);
    std::optional<Instant> nextDue() const;

    Instant m_now;
    bool m_isHeld = false;
    WallTime m_startDate;
    std::deque<std::function<void()>> m_posted;
    Timers m_timers;
    Timers m_outside;
    std::map<TimerId, Instant> m_dueOf;
    TimerId m_nextTimer = 1;
    std::vector<std::unique_ptr<SimulatedThread>> m_jobs;
};

/// A serial queue on the simulated clock.
class SimulatedSerialQueue final : public SerialQueue {
public:
    explicit SimulatedSerialQueue(SimulatedMainActor& actor)
        : m_actor(actor) {}

    void async(std::function<void()> job) override;
    void sleep(Duration duration) override { m_actor.blockFor(duration); }

    /// No job runs or waits.
    bool isIdle() const { return m_jobs.empty() && !m_running; }

private:
    SimulatedMainActor& m_actor;
    std::deque<std::function<void()>> m_jobs;
    bool m_running = false;
};

/// A background pool on the simulated clock. A blocking call takes its time by the actor's `blockFor`.
class SimulatedBackgroundPool final : public BackgroundPool {
public:
    explicit SimulatedBackgroundPool(SimulatedMainActor& actor)
        : m_actor(actor) {}

    void run(std::function<void()> work, std::function<void()> done) override;

private:
    SimulatedMainActor& m_actor;
};

} // namespace talvera::test
