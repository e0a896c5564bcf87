// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityFixture.h"

#include <algorithm>

namespace talvera::test {

/// Applications that don't play by the rules cost a bounded moment and count as silent.
class BadApplication : public AccessibilityFixture {
protected:
    BadApplication()
        : AccessibilityFixture(AtspiAccessibility::usualPatience) {}

    /// The machine may be busy with something else, hence the shortest of some.
    void expectSilenceInTime() {
        using Clock = std::chrono::steady_clock;
        auto shortest = Clock::duration::max();
        for (int i = 0; i < 5; ++i) {
            const auto start = Clock::now();
            EXPECT_EQ(focusedRole(), silentWindow);
            shortest = std::min(shortest, Clock::now() - start);
        }
        EXPECT_LT(shortest, AtspiAccessibility::usualPatience + std::chrono::milliseconds(150));
    }
};

} // namespace talvera::test
