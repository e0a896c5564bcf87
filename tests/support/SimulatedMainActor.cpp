// SPDX-License-Identifier: MIT
#include "SimulatedMainActor.h"

namespace talvera::test {

SimulatedMainActor::SimulatedMainActor()
    : m_startDate(std::chrono::seconds(1'700'000'000)) {}
SimulatedMainActor::~SimulatedMainActor() = default;

Instant SimulatedMainActor::now() const {
    return m_offMain ? m_offMainNow : m_now;
}

WallTime SimulatedMainActor::date() const {
    return m_startDate + std::chrono::duration_cast<WallTime::duration>(now() - Instant{});
}

void SimulatedMainActor::post(std::function<void()> work) {
    if (m_offMain)
        postAt(m_offMainNow, std::move(work));
    else
        m_posted.push_back(std::move(work));
}

void SimulatedMainActor::postAt(Instant moment, std::function<void()> work) {
    const auto timer = m_nextTimer++;
    m_timers.emplace(std::pair{moment, timer}, std::move(work));
    m_dueOf.emplace(timer, moment);
}

MainActor::TimerId SimulatedMainActor::startTimer(Duration delay, std::function<void()> work) {
    const auto timer = m_nextTimer;
    postAt(now() + std::max(delay, Duration::zero()), std::move(work));
    return timer;
}

void SimulatedMainActor::cancelTimer(TimerId timer) {
    const auto due = m_dueOf.find(timer);
    if (due == m_dueOf.end())
        return;
    m_timers.erase({due->second, timer});
    m_dueOf.erase(due);
}

void SimulatedMainActor::block(const std::function<void()>& work) {
    if (m_offMain) {
        work();
        return;
    }
    m_now = runOffMain(work);
}

void SimulatedMainActor::blockFor(Duration duration) {
    if (m_offMain)
        m_offMainNow += duration;
    else
        m_now += duration;
}

Instant SimulatedMainActor::runOffMain(const std::function<void()>& job) {
    struct Restore {
        SimulatedMainActor& actor;
        bool wasOffMain;
        Instant before;
        ~Restore() {
            actor.m_offMain = wasOffMain;
            actor.m_offMainNow = before;
        }
    } restore{*this, m_offMain, m_offMainNow};
    m_offMainNow = now();
    m_offMain = true;
    job();
    return m_offMainNow;
}

void SimulatedMainActor::settle() {
    while (true) {
        // Timers that are already due have their place between the posted turns.
        if (!m_timers.empty() && m_timers.begin()->first.first <= m_now) {
            const auto entry = m_timers.begin();
            m_posted.push_back(std::move(entry->second));
            m_dueOf.erase(entry->first.second);
            m_timers.erase(entry);
            continue;
        }
        if (m_posted.empty())
            return;
        const auto work = std::move(m_posted.front());
        m_posted.pop_front();
        work();
    }
}

void SimulatedMainActor::runUntil(Instant moment) {
    settle();
    while (!m_timers.empty() && m_timers.begin()->first.first <= moment) {
        m_now = std::max(m_now, m_timers.begin()->first.first);
        settle();
    }
    m_now = std::max(m_now, moment);
}

bool SimulatedMainActor::runToRest(Duration limit) {
    const auto end = m_now + limit;
    settle();
    while (!m_timers.empty()) {
        if (m_timers.begin()->first.first > end)
            return false;
        m_now = std::max(m_now, m_timers.begin()->first.first);
        settle();
    }
    return true;
}

void SimulatedSerialQueue::async(std::function<void()> job) {
    m_jobs.push_back(std::move(job));
    if (!m_running) {
        m_running = true;
        m_actor.postAt(m_actor.now(), [this] { runNext(); });
    }
}

void SimulatedSerialQueue::sleep(Duration duration) {
    m_actor.blockFor(duration);
}

void SimulatedSerialQueue::runNext() {
    if (m_jobs.empty()) {
        m_running = false;
        return;
    }
    const auto job = std::move(m_jobs.front());
    m_jobs.pop_front();
    const auto end = m_actor.runOffMain(job);
    m_actor.postAt(end, [this] { runNext(); });
}

void SimulatedBackgroundPool::run(std::function<void()> work, std::function<void()> done) {
    m_actor.postAt(m_actor.now(), [this, work = std::move(work), done = std::move(done)]() mutable {
        const auto end = m_actor.runOffMain(work);
        m_actor.postAt(end, std::move(done));
    });
}

} // namespace talvera::test
