// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>

namespace talvera::test {

/// How long `action` takes at best: the machine may be busy with something else in most of its `attempts`.
template <typename Action>
std::chrono::steady_clock::duration shortestOf(int attempts, const Action& action) {
    using Clock = std::chrono::steady_clock;
    auto shortest = Clock::duration::max();
    for (int i = 0; i < attempts; ++i) {
        const auto start = Clock::now();
        action();
        shortest = std::min(shortest, Clock::now() - start);
    }
    return shortest;
}

} // namespace talvera::test
