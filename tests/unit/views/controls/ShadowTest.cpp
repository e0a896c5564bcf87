// SPDX-License-Identifier: MIT
#include "views/controls/Shadow.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

constexpr QSize plane(120, 90);
constexpr int reach = Shadow::reach;

int alphaAt(const QImage& picture, int x, int y) {
    return qAlpha(picture.pixel(x, y));
}

TEST(ShadowPicture, shadow_fadesToNothingOnAllSides) {
    const auto picture = shadowPicture(plane, 14, reach, 1, QColor(0, 0, 0, 0x38));
    ASSERT_EQ(picture.size(), plane + QSize(2 * reach, 2 * reach));
    const int middle = picture.height() / 2;
    int before = 0;
    for (int x = 0; x <= reach; ++x) {
        const int alpha = alphaAt(picture, x, middle);
        EXPECT_GE(alpha, before);
        EXPECT_LE(alpha - before, 24) << "an edge at " << x;
        before = alpha;
    }
    EXPECT_GT(before, 25);
    for (const int x : {0, picture.width() / 2, picture.width() - 1}) {
        for (const int y : {0, picture.height() - 1})
            EXPECT_LE(alphaAt(picture, x, y), 2) << x << ' ' << y;
    }
}

TEST(ShadowPicture, light_comesFromAbove) {
    const auto picture = shadowPicture(plane, 14, reach, 1, QColor(0, 0, 0, 0x38));
    const int middle = picture.width() / 2;
    EXPECT_GT(alphaAt(picture, middle, reach + plane.height() + 3), alphaAt(picture, middle, reach - 4) + 8);
}

TEST(ShadowPicture, itsHalves_mirrorEachOther) {
    for (const QSize& size : {QSize(120, 90), QSize(121, 91), QSize(31, 9), QSize(1, 1), QSize(40, 700)}) {
        const auto picture = shadowPicture(size, 14, reach, 1, QColor(0, 0, 0, 0x38));
        EXPECT_EQ(picture, picture.mirrored(true, false));
    }
}

TEST(ShadowPicture, tallPlane_hasTheSameShadowAtItsEnds) {
    const auto tall = shadowPicture({120, 700}, 14, reach, 1, Qt::black);
    const auto taller = shadowPicture({120, 900}, 14, reach, 1, Qt::black);
    const QSize end(tall.width(), 200);
    EXPECT_EQ(tall.copy({{0, 0}, end}), taller.copy({{0, 0}, end}));
    const auto bottom = [&end](const QImage& picture) {
        return picture.copy({{0, picture.height() - end.height()}, end});
    };
    EXPECT_EQ(bottom(tall), bottom(taller));
}

TEST(ShadowPicture, twiceAsManyPixels_lookTheSame) {
    const auto one = shadowPicture(plane, 14, reach, 1, Qt::black);
    const auto two = shadowPicture(2 * plane, 28, 2 * reach, 2, Qt::black);
    for (int y = 0; y < one.height(); y += 7) {
        for (int x = 0; x < one.width(); x += 5)
            EXPECT_NEAR(alphaAt(one, x, y), alphaAt(two, 2 * x, 2 * y), 40) << x << ' ' << y;
    }
}

} // namespace
