// SPDX-License-Identifier: MIT
#include "linux/x11/windows/WorkAreas.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

constexpr QRect left(0, 0, 1280, 1024);
constexpr QRect right(1280, 0, 1920, 1080);
constexpr QSize both(3200, 1080);

TEST(WorkAreas, partialStrut_namesItsEdgeAndPart) {
    const auto struts = strutsOf({0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 1280, 3199});
    ASSERT_EQ(struts.size(), 1U);
    EXPECT_EQ(struts[0].edge, Strut::Bottom);
    EXPECT_EQ(struts[0].size, 40);
    EXPECT_EQ(struts[0].start, 1280);
    EXPECT_EQ(struts[0].end, 3199);
}

TEST(WorkAreas, wholeStrut_goesAllAlongItsEdge) {
    const auto struts = strutsOf({30, 0, 20, 0});
    ASSERT_EQ(struts.size(), 2U);
    EXPECT_EQ(withoutStruts(left, struts, both), QRect(30, 20, 1250, 1004));
}

TEST(WorkAreas, nonsense_isNoStrut) {
    EXPECT_TRUE(strutsOf({}).empty());
    EXPECT_TRUE(strutsOf({1, 2, 3}).empty());
    EXPECT_TRUE(strutsOf({0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 900, 100}).empty());
    const auto huge = strutsOf(std::vector<std::uint32_t>(12, 0xffffffff));
    EXPECT_EQ(withoutStruts(left, huge, both), left);
}

TEST(WorkAreas, dockOnOneMonitor_leavesTheOtherWhole) {
    const auto struts = strutsOf({0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 1280, 3199});
    EXPECT_EQ(withoutStruts(right, struts, both), QRect(1280, 0, 1920, 1040));
    EXPECT_EQ(withoutStruts(left, struts, both), left);
}

TEST(WorkAreas, lowerMonitorsDock_countsFromTheScreensEdge) {
    // 56 pixels of the strut lie below the shorter monitor.
    const auto struts = strutsOf({0, 0, 0, 96, 0, 0, 0, 0, 0, 0, 0, 1279});
    EXPECT_EQ(withoutStruts(left, struts, both), QRect(0, 0, 1280, 984));
}

TEST(WorkAreas, twoDocksOnOneEdge_theLargerCounts) {
    const std::vector<Strut> struts{{Strut::Top, 20, 0, 5000}, {Strut::Top, 30, 0, 5000}};
    EXPECT_EQ(withoutStruts(right, struts, both), QRect(1280, 30, 1920, 1050));
}

TEST(WorkAreas, monitorOfAWindow_isTheOneWithMostOfIt) {
    EXPECT_EQ(monitorOf({left, right}, QRect(1000, 100, 400, 400)), left);
    EXPECT_EQ(monitorOf({left, right}, QRect(1200, 100, 400, 400)), right);
    EXPECT_EQ(monitorOf({left, right}, QRect(-500, 100, 400, 400)), std::nullopt);
    EXPECT_EQ(monitorOf({}, QRect(0, 0, 1, 1)), std::nullopt);
}

} // namespace
