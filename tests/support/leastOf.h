// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <limits>

namespace talvera::test {

/// The least of what `count` counts in so many attempts, none after the first 0: a busy machine adds faults
/// of its own now and then, a mistake of ours is in each of them.
template <typename Count>
int leastOf(int attempts, const Count& count) {
    int least = std::numeric_limits<int>::max();
    for (int i = 0; i < attempts && least > 0; ++i)
        least = std::min(least, count());
    return least;
}

} // namespace talvera::test
