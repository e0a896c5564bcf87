// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"

#include <QObject>

#include <deque>
#include <mutex>
#include <unordered_map>

namespace talvera {

/// The main actor on the Qt event loop of the thread that makes it.
class QtMainActor final : public QObject, public MainActor {
public:
    QtMainActor();
    ~QtMainActor() override;

    Instant now() const override;
    WallTime date() const override;
    void post(std::function<void()> work) override;
    TimerId startTimer(Duration delay, std::function<void()> work) override;
    void cancelTimer(TimerId timer) override;
    void block(const std::function<void()>& work) override;
    void blockFor(Duration duration) override;

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void drain();
    void wake();
    void arm(TimerId timer, Instant due);

    struct Timer {
        Instant due;
        std::function<void()> work;
        int qtTimer = 0;
    };

    std::mutex m_mutex; // guards the two below
    std::deque<std::function<void()>> m_posted;
    bool m_wakePending = false;

    TimerId m_nextTimer = 1;
    std::unordered_map<TimerId, Timer> m_timers;
    bool m_blocked = false;
};

} // namespace talvera
