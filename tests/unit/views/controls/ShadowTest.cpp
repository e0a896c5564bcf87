// SPDX-License-Identifier: MIT
#include "views/controls/Shadow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>

using namespace talvera;

namespace {

constexpr QSize plane(120, 90);
constexpr int reach = Shadow::reach;

int alphaAt(const QImage& picture, int x, int y) {
    return qAlpha(picture.pixel(x, y));
}

/// How dark the shadow is there, in full precision: that of two lights from above, each with an edge
/// softened by a normal distribution. Counted from the middle of the plane.
double exactAlpha(double x, double y, const QSize& size, double radius, double ratio, const QColor& color) {
    const auto ofLight = [&](double drop, double blur, double strength) {
        const double beyondX = std::abs(x) - size.width() / 2.0 + radius;
        const double beyondY = std::abs(y - drop * ratio) - size.height() / 2.0 + radius;
        const double distance = std::hypot(std::max(beyondX, 0.0), std::max(beyondY, 0.0)) +
                                std::min(std::max(beyondX, beyondY), 0.0) - radius;
        return strength * color.alphaF() * 0.5 * std::erfc(distance / (blur * ratio * std::numbers::sqrt2));
    };
    return 255 * (1 - (1 - ofLight(6, 8, 1)) * (1 - ofLight(1, 1.5, 0.5)));
}

TEST(ShadowPicture, everyPixel_isWithinOneStepOfTheExactShadow) {
    struct Case {
        QSize size;
        double radius;
        double ratio;
        QColor color;
    };
    for (const auto& [size, radius, ratio, color] :
         {Case{{320, 400}, 14, 1, QColor(0, 0, 0, 0x38)}, Case{{400, 500}, 17.5, 1.25, Qt::black},
          Case{{131, 77}, 12, 1.5, QColor(20, 60, 200, 0x90)}, Case{{640, 90}, 28, 2, Qt::black},
          Case{{31, 9}, 4, 1, Qt::black}, Case{{1, 1}, 0, 1, Qt::white}}) {
        const int margin = static_cast<int>(std::lround(reach * ratio));
        const auto picture = shadowPicture(size, radius, margin, ratio, color);
        double furthest = 0;
        for (int row = 0; row < picture.height(); ++row) {
            for (int column = 0; column < picture.width(); ++column) {
                const double alpha =
                    exactAlpha(column + 0.5 - picture.width() / 2.0, row + 0.5 - picture.height() / 2.0, size,
                               radius, ratio, color);
                const QRgb pixel = picture.pixel(column, row);
                furthest = std::max(furthest, std::abs(qAlpha(pixel) - alpha));
                furthest = std::max(furthest, std::abs(qBlue(pixel) - color.blueF() * alpha));
            }
        }
        EXPECT_LE(furthest, 1) << size.width() << 'x' << size.height();
    }
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
