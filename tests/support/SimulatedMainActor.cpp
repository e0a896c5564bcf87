// SPDX-License-Identifier: MIT
#include "SimulatedMainActor.h"

#include <algorithm>

namespace talvera::test {

SimulatedMainActor::SimulatedMainActor(Instant start)
    : m_now(start)
    , m_startDate(std::chrono::seconds(1'700'000'000)) {}
SimulatedMainActor::~SimulatedMainActor() = default;

WallTime SimulatedMainActor::date() const {
    return m_startDate + std::chrono::duration_cast<WallTime::duration>(m_now - Instant{});
}

void SimulatedMainActor::post(std::function<void()> work) {
    m_posted.push_back(std::move(work));
}

MainActor::TimerId SimulatedMainActor::startTimer(Duration delay, std::function<void()> work) {
    const auto timer = m_nextTimer++;
    const auto moment = m_now + std::max(delay, Duration::zero());
    m_timers.emplace(std::pair{moment, timer}, std::move(work));
    m_dueOf.emplace(timer, moment);
    return timer;
}

void SimulatedMainActor::cancelTimer(TimerId timer) {
    const auto due = m_dueOf.find(timer);
    if (due == m_dueOf.end())
        return;
    m_timers.erase({due->second, timer});
    m_dueOf.erase(due);
}

void SimulatedMainActor::startOutside(Duration delay, std::function<void()> happening) {
    m_outside.emplace(std::pair{m_now + std::max(delay, Duration::zero()), m_nextTimer++},
                      std::move(happening));
}

void SimulatedMainActor::startJob(std::function<void()> job) {
    auto& made = *m_jobs.emplace_back(std::make_unique<SimulatedThread>(std::move(job)));
    startOutside(Duration::zero(), [this, &made] { resume(made); });
}

void SimulatedMainActor::resume(SimulatedThread& job) {
    job.resume();
    if (job.hasEnded())
        std::erase_if(m_jobs, [&job](const auto& other) { return other.get() == &job; });
}

void SimulatedMainActor::block(const std::function<void()>& work) {
    work();
}

void SimulatedMainActor::blockFor(Duration duration) {
    if (auto* job = SimulatedThread::current()) {
        startOutside(duration, [this, job] { resume(*job); });
        job->pause();
        return;
    }
    const auto end = m_now + duration;
    m_isHeld = true;
    while (runNextOutside(end)) {
    }
    m_isHeld = false;
    m_now = std::max(m_now, end);
}

/// False when nothing is due by then.
bool SimulatedMainActor::runNextOutside(Instant until) {
    if (m_outside.empty() || m_outside.begin()->first.first > until)
        return false;
    const auto next = m_outside.extract(m_outside.begin());
    m_now = std::max(m_now, next.key().first);
    next.mapped()();
    return true;
}

void SimulatedMainActor::settle() {
    while (true) {
        if (runNextOutside(m_now))
            continue;
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

std::optional<Instant> SimulatedMainActor::nextDue() const {
    std::optional<Instant> due;
    for (const auto* timers : {&m_timers, &m_outside}) {
        if (!timers->empty() && (!due || timers->begin()->first.first < *due))
            due = timers->begin()->first.first;
    }
    return due;
}

void SimulatedMainActor::runUntil(Instant moment) {
    settle();
    for (auto due = nextDue(); due && *due <= moment; due = nextDue()) {
        m_now = std::max(m_now, *due);
        settle();
    }
    m_now = std::max(m_now, moment);
}

bool SimulatedMainActor::runToRest(Duration limit) {
    const auto end = m_now + limit;
    settle();
    for (auto due = nextDue(); due; due = nextDue()) {
        if (*due > end)
            return false;
        m_now = std::max(m_now, *due);
        settle();
    }
    return true;
}

void SimulatedSerialQueue::async(std::function<void()> job) {
    m_jobs.push_back(std::move(job));
    if (std::exchange(m_running, true))
        return;
    m_actor.startJob([this] {
        while (!m_jobs.empty()) {
            const auto next = std::move(m_jobs.front());
            m_jobs.pop_front();
            next();
        }
        m_running = false;
    });
}

void SimulatedBackgroundPool::run(std::function<void()> work, std::function<void()> done) {
    m_actor.startJob([&actor = m_actor, work = std::move(work), done = std::move(done)]() mutable {
        work();
        actor.post(std::move(done));
    });
}

} // namespace talvera::test
