// SPDX-License-Identifier: MIT
//
// A few of the lives that the program "simulation" lives through by the thousand, for those who change one
// thing and want to know whether it is noticed.
#include "PrintQt.h"
#include "Simulation.h"

#include <gtest/gtest.h>

using namespace talvera::simulation;

namespace {

TEST(Lives, ofFortySeeds_areWithoutAViolation) {
    constexpr std::uint64_t seeds = 40;
    for (std::uint64_t seed = 1; seed <= seeds; ++seed) {
        Simulation simulation(seed);
        simulation.run();
        ASSERT_FALSE(simulation.violation()) << "seed " << seed << '\n'
                                             << simulation.story().text().toStdString();
    }
}

TEST(Lives, withARecogniserThatCannotBePrepared_areTheSame) {
    constexpr std::uint64_t seeds = 40;
    for (std::uint64_t seed = 101; seed <= 100 + seeds; ++seed) {
        Simulation prepared(seed);
        Simulation plain(seed);
        plain.useOldRecogniser();
        prepared.run();
        plain.run();
        ASSERT_EQ(prepared.account(), plain.account()) << "seed " << seed;
        ASSERT_EQ(prepared.tally().dictations, plain.tally().dictations);
    }
}

TEST(Lives, ofOneSeed_areTheSameEachTime) {
    constexpr std::uint64_t seed = 7;
    Simulation once(seed);
    Simulation again(seed);
    once.run();
    again.run();
    EXPECT_EQ(once.account(), again.account());
}

} // namespace
