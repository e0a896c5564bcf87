// SPDX-License-Identifier: MIT
#include "concurrency/QtMainActor.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimerEvent>

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>

namespace talvera {

namespace {
const auto drainEvent = static_cast<QEvent::Type>(QEvent::registerEventType());
}

QtMainActor::QtMainActor() = default;
QtMainActor::~QtMainActor() = default;

Instant QtMainActor::now() const {
    return Instant(std::chrono::duration_cast<Duration>(std::chrono::steady_clock::now().time_since_epoch()));
}

WallTime QtMainActor::date() const {
    return std::chrono::system_clock::now();
}

void QtMainActor::post(std::function<void()> work) {
    const std::scoped_lock lock(m_mutex);
    m_posted.push_back(std::move(work));
    if (!m_wakePending) {
        m_wakePending = true;
        wake();
    }
}

void QtMainActor::wake() {
    QCoreApplication::postEvent(this, new QEvent(drainEvent), Qt::HighEventPriority);
}

bool QtMainActor::event(QEvent* event) {
    if (event->type() != drainEvent)
        return QObject::event(event);
    drain();
    return true;
}

void QtMainActor::drain() {
    std::deque<std::function<void()>> batch;
    {
        const std::scoped_lock lock(m_mutex);
        if (m_blocked)
            return; // block() wakes us again
        m_wakePending = false;
        batch.swap(m_posted);
    }
    // What this batch posts runs in a later turn, so that painting and input get theirs in between.
    while (!batch.empty()) {
        const auto work = std::move(batch.front());
        batch.pop_front();
        work();
    }
}

MainActor::TimerId QtMainActor::startTimer(Duration delay, std::function<void()> work) {
    const auto timer = m_nextTimer++;
    const auto due = now() + delay;
    m_timers.emplace(timer, Timer{due, std::move(work)});
    arm(timer, due);
    return timer;
}

void QtMainActor::arm(TimerId timer, Instant due) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(due - now());
    m_timers.at(timer).qtTimer =
        QObject::startTimer(std::max(left, std::chrono::milliseconds(0)), Qt::PreciseTimer);
}

void QtMainActor::cancelTimer(TimerId timer) {
    const auto found = m_timers.find(timer);
    if (found == m_timers.end())
        return;
    killTimer(found->second.qtTimer);
    m_timers.erase(found);
}

void QtMainActor::timerEvent(QTimerEvent* event) {
    const auto found = std::find_if(m_timers.begin(), m_timers.end(), [event](const auto& entry) {
        return entry.second.qtTimer == event->timerId();
    });
    killTimer(event->timerId());
    if (found == m_timers.end())
        return;
    if (m_blocked) {
        // Due while the actor is held: comes again right after.
        found->second.qtTimer = 0;
        return;
    }
    if (found->second.due > now()) {
        arm(found->first, found->second.due);
        return;
    }
    const auto work = std::move(found->second.work);
    m_timers.erase(found);
    work();
}

void QtMainActor::block(const std::function<void()>& work) {
    if (m_blocked) { // already held: a step inside another one
        work();
        return;
    }
    m_blocked = true;
    std::exception_ptr failure;
    std::atomic<bool> ended = false;
    std::thread worker([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        const std::scoped_lock lock(m_mutex);
        ended = true;
        wake();
    });
    QEventLoop loop;
    while (!ended)
        loop.processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    worker.join();
    m_blocked = false;

    for (auto& [timer, entry] : m_timers) {
        if (entry.qtTimer == 0)
            arm(timer, entry.due);
    }
    {
        const std::scoped_lock lock(m_mutex);
        if (m_wakePending)
            wake();
    }
    if (failure)
        std::rethrow_exception(failure);
}

void QtMainActor::blockFor(Duration duration) {
    std::this_thread::sleep_for(duration);
}

} // namespace talvera
