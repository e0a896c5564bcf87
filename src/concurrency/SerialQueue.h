// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"

#include <functional>

namespace talvera {

/// A worker that runs jobs one after another, in the order in which they came, off the main thread.
class SerialQueue {
public:
    virtual ~SerialQueue() = default;

    /// Queues a job. Any thread.
    virtual void async(std::function<void()> job) = 0;

    /// Makes the running job wait. Only from within a job of this queue.
    virtual void sleep(Duration duration) = 0;
};

} // namespace talvera
