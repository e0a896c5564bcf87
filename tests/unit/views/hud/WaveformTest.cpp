// SPDX-License-Identifier: MIT
#include "views/hud/Waveform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace talvera;

namespace {

TEST(Waveform, barAtTheOrigin_isAtItsLowest) {
    EXPECT_DOUBLE_EQ(Waveform(0, 1).barHeight(0), 0.08 * 22); // all three sines are 0
}

TEST(Waveform, knownBar_hasTheKnownHeight) {
    const double w = std::sin(5 * 0.33 + 3.6 * 2.1) * 0.5 + std::sin(5 * 0.77 + 3.6 * 3.7) * 0.3 +
                     std::sin(5 * 1.13 + 3.6 * 5.3) * 0.2;
    EXPECT_NEAR(Waveform(3, 0.5).barHeight(5), std::max(0.6 * std::abs(w), 0.08) * 22, 1e-9);
}

TEST(Waveform, everyBarAtEveryTime_staysInItsBox) {
    for (int bar = 0; bar < Waveform::barCount; ++bar) {
        for (double time = 8e8; time < 8e8 + 10; time += 0.033) {
            for (const double level : {0.0, 0.3, 1.0}) {
                const double height = Waveform(time, level).barHeight(bar);
                ASSERT_GE(height, 0.08 * 22);
                ASSERT_LE(height, 22);
            }
        }
    }
}

TEST(Waveform, silence_ripplesLowAndVoiceSwells) {
    double silent = 0;
    double loud = 0;
    bool moves = false;
    for (double time = 0; time < 10; time += 0.033) {
        const double height = Waveform(time, 0).barHeight(3);
        moves = moves || height != 0.08 * 22;
        silent = std::max(silent, height);
        loud = std::max(loud, Waveform(time, 1).barHeight(3));
    }
    EXPECT_TRUE(moves);
    EXPECT_LE(silent, 0.1 * 22);
    EXPECT_GT(loud, 15);
}

TEST(EasedLevel, change_takesEightHundredthsOfASecondAndIsFastAtFirst) {
    const Instant start(seconds(100));
    EasedLevel level;
    level.goTo(1, start);
    EXPECT_EQ(level.at(start), 0);
    EXPECT_DOUBLE_EQ(level.at(start + seconds(0.04)), 0.75);
    EXPECT_EQ(level.at(start + seconds(0.08)), 1);
    EXPECT_EQ(level.at(start + seconds(5)), 1);
}

TEST(EasedLevel, changeDuringAChange_goesOnFromWhereItIs) {
    const Instant start(seconds(100));
    EasedLevel level;
    level.goTo(1, start);
    level.goTo(0, start + seconds(0.04));
    EXPECT_DOUBLE_EQ(level.at(start + seconds(0.04)), 0.75);
    EXPECT_EQ(level.at(start + seconds(0.12)), 0);
}

} // namespace
