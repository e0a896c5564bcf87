// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityFixture.h"
#include "shortestOf.h"

namespace talvera::test {

/// Applications that don't play by the rules cost a bounded moment and count as silent.
class BadApplication : public AccessibilityFixture {
protected:
    BadApplication()
        : AccessibilityFixture(AtspiAccessibility::usualPatience) {}

    void expectSilenceInTime() {
        const auto shortest = shortestOf(5, [&] { EXPECT_EQ(focusedRole(), silentWindow); });
        EXPECT_LT(shortest, AtspiAccessibility::usualPatience + std::chrono::milliseconds(150));
    }
};

} // namespace talvera::test
