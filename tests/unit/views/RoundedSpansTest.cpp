// SPDX-License-Identifier: MIT
#include "views/roundedSpans.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

bool contains(const std::vector<QRect>& spans, int x, int y) {
    return std::any_of(spans.begin(), spans.end(), [&](const QRect& span) { return span.contains(x, y); });
}

TEST(RoundedSpans, withoutRadius_isTheRectangle) {
    EXPECT_EQ(roundedSpans({10, 20, 30, 40}, 0), std::vector{QRect(10, 20, 30, 40)});
}

TEST(RoundedSpans, corners_areMissingAndEdgesAreThere) {
    const auto spans = roundedSpans({0, 0, 100, 48}, 24);
    for (const int x : {0, 99}) {
        EXPECT_FALSE(contains(spans, x, 0));
        EXPECT_FALSE(contains(spans, x, 47));
        EXPECT_TRUE(contains(spans, x, 24));
    }
    EXPECT_TRUE(contains(spans, 50, 0));
    EXPECT_TRUE(contains(spans, 50, 47));
}

TEST(RoundedSpans, shape_isTheSameUpsideDownAndMirrored) {
    const auto spans = roundedSpans({0, 0, 61, 33}, 13);
    for (int y = 0; y < 33; ++y) {
        for (int x = 0; x < 61; ++x) {
            ASSERT_EQ(contains(spans, x, y), contains(spans, 60 - x, y));
            ASSERT_EQ(contains(spans, x, y), contains(spans, x, 32 - y));
        }
    }
}

TEST(RoundedSpans, radiusLargerThanTheRectangle_isCut) {
    const auto spans = roundedSpans({0, 0, 40, 20}, 500);
    EXPECT_TRUE(contains(spans, 20, 0));
    EXPECT_TRUE(contains(spans, 0, 10));
    EXPECT_FALSE(contains(spans, 0, 0));
}

TEST(RoundedSpans, emptyRectangle_hasNone) {
    EXPECT_TRUE(roundedSpans({5, 5, 0, 0}, 3).empty());
}

} // namespace
