// SPDX-License-Identifier: MIT
#include "concurrency/Published.h"
#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

TEST(Published, observer_hearsEveryAssignmentAlsoOfAnEqualValue) {
    Published<int> value(1);
    std::vector<int> heard;
    const auto subscription = value.observe([&](int v) { heard.push_back(v); });
    value.set(1);
    value.set(2);
    EXPECT_EQ(heard, (std::vector{1, 2}));
}

TEST(Published, subscriber_getsThePresentValueFirstInATurnOfItsOwn) {
    test::SimulatedMainActor actor;
    Published<int> value(1);
    std::vector<int> heard;
    const auto subscription = value.subscribe(actor, [&](int v) { heard.push_back(v); });
    value.set(2);
    EXPECT_TRUE(heard.empty());
    actor.settle();
    EXPECT_EQ(heard, (std::vector{1, 2}));
}

TEST(Published, endedSubscription_hearsNothingMore) {
    test::SimulatedMainActor actor;
    Published<int> value(1);
    int calls = 0;
    {
        const auto subscription = value.subscribe(actor, [&](int) { ++calls; });
    }
    value.set(3);
    actor.settle();
    EXPECT_EQ(calls, 0);
}

TEST(Published, observerThatAssigns_reachesEveryoneInOrder) {
    Published<int> value(0);
    std::vector<int> heard;
    const auto first = value.observe([&](int v) {
        if (v == 1)
            value.set(2);
    });
    const auto second = value.observe([&](int v) { heard.push_back(v); });
    value.set(1);
    EXPECT_EQ(heard, (std::vector{2, 1}));
    EXPECT_EQ(value.get(), 2);
}

} // namespace
