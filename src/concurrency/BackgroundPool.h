// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace talvera {

/// Where blocking work goes that must not hold the main thread.
class BackgroundPool {
public:
    virtual ~BackgroundPool() = default;

    /// Runs `work` on another thread, then `done` on the main thread. `work` must not throw.
    virtual void run(std::function<void()> work, std::function<void()> done) = 0;

    /// The program is about to end and waits for what runs here: work that takes long and comes to nothing
    /// then gives up. Any thread.
    virtual bool isEnding() const { return false; }
};

} // namespace talvera
