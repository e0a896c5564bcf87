// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <chrono>
#include <functional>
#include <thread>

namespace talvera::test {

/// Runs the event loop, if there is one, until the condition holds; false when it doesn't in half a minute.
inline bool eventually(const std::function<bool()>& condition) {
    constexpr std::chrono::milliseconds pause{10}; // for what no event tells
    const QDeadlineTimer deadline(std::chrono::seconds(30));
    const bool hasEventLoop = QCoreApplication::instance() != nullptr;
    QTimer timer;
    if (hasEventLoop)
        timer.start(pause);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        if (hasEventLoop)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        else
            std::this_thread::sleep_for(pause);
    }
    return true;
}

} // namespace talvera::test
