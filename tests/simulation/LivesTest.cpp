// SPDX-License-Identifier: MIT
//
// A few of the lives that the program "simulation" lives through by the thousand, for those who change one
// thing and want to know whether it is noticed.
#include "PrintQt.h"
#include "Simulation.h"

#include <gtest/gtest.h>

#include <vector>

using namespace talvera::simulation;

namespace {

/// What was done and what followed, round by round.
std::vector<QStringList> roundsOf(Simulation& simulation) {
    std::vector<QStringList> rounds;
    simulation.onRound = [&] { rounds.push_back(simulation.account()); };
    simulation.run();
    return rounds;
}

/// What followed, round by round, but for the runs of the recogniser.
std::vector<QStringList> coursesOf(Simulation& simulation) {
    std::vector<QStringList> courses;
    simulation.onRound = [&] { courses.push_back(simulation.course()); };
    simulation.run();
    return courses;
}

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
    constexpr std::uint64_t seeds = 30;
    std::uint64_t lives = 0;
    for (std::uint64_t seed = 101; seed <= 100 + seeds; ++seed) {
        Simulation prepared(seed, Simulation::Kind::AtOnce);
        Simulation plain(seed, Simulation::Kind::AtOnce);
        plain.useOldRecogniser();
        const auto expected = roundsOf(plain);
        const auto rounds = roundsOf(prepared);
        ASSERT_EQ(rounds.size(), expected.size()) << "seed " << seed;
        for (std::size_t round = 0; round < rounds.size(); ++round)
            ASSERT_EQ(rounds[round], expected[round]) << "seed " << seed << ", round " << round;
        ASSERT_EQ(prepared.tally().dictations, plain.tally().dictations) << "seed " << seed;
        ASSERT_FALSE(plain.hasPrepared());
        lives += prepared.hasPrepared() ? 1 : 0;
    }
    EXPECT_GT(lives, seeds / 2) << "hardly anything was prepared";
}

TEST(Lives, inWhichPartsAreRecognisedAhead_takeTheSameCourse) {
    constexpr std::uint64_t seed = 201;
    Simulation ahead(seed, Simulation::Kind::Long);
    Simulation plain(seed, Simulation::Kind::Long);
    plain.useOldRecogniser();
    const auto expected = coursesOf(plain);
    const auto courses = coursesOf(ahead);
    ASSERT_FALSE(plain.violation() || ahead.violation());
    ASSERT_EQ(courses.size(), expected.size());
    for (std::size_t round = 0; round < courses.size(); ++round)
        ASSERT_EQ(courses[round], expected[round]) << "round " << round;
    EXPECT_EQ(plain.tally().partsAhead, 0U);
    EXPECT_GT(ahead.tally().partsAhead, 2U) << "hardly anything was recognised ahead";
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
