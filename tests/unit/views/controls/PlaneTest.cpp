// SPDX-License-Identifier: MIT
// Rectangles at scales of which pixels are no whole number. The scale is the process's:
// tests/unit/views/CMakeLists.txt runs these at several.
#include "views/controls/Plane.h"

#include "platform/desktop/DesktopAppearance.h"
#include "views/ViewEngine.h"

#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace talvera;

namespace {

TEST(WholePixels, equalSizes_areEqualWhereverTheyStand) {
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        const auto size = wholePixels({0, 0, 12, 20}, ratio).size();
        for (int place = 0; place < 40; ++place) {
            const auto found = wholePixels({place * 1.0, place * 0.5, 12, 20}, ratio);
            EXPECT_EQ(found.size(), size) << ratio << " at " << place;
            EXPECT_LE(std::abs(found.x() - place * ratio), 0.5);
        }
    }
}

TEST(WholePixels, thinLine_staysThereAndNothingIsNothing) {
    EXPECT_EQ(wholePixels({0, 0, 100, 0.3}, 1).height(), 1);
    EXPECT_EQ(wholePixels({0, 0, 100, 0}, 2).height(), 0);
    EXPECT_EQ(wholePixels({0, 0, 1e9, 1}, 2).width(), 8192);
}

/// The largest difference of a channel; smooth corners are not mirrored to the last bit.
int difference(const QImage& one, const QImage& other) {
    int largest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a = one.pixelColor(x, y);
            const QColor b = other.pixelColor(x, y);
            largest = std::max({largest, std::abs(a.red() - b.red()), std::abs(a.green() - b.green()),
                                std::abs(a.blue() - b.blue())});
        }
    }
    return largest;
}

constexpr int smoothness = 48; // of 255

/// A plane on black where a layout may come to put it.
class PlanesOnScreen : public testing::Test {
protected:
    void show(const QVariantMap& properties, QSizeF size, QPointF place) {
        plane = engine.create("controls/KbdCap", {});
        for (auto property = properties.begin(); property != properties.end(); ++property)
            plane->setProperty(property.key().toUtf8(), property.value());
        plane->setParentItem(window.contentItem());
        plane->setSize(size);
        plane->setPosition(place);
        window.setColor(Qt::black);
        window.resize(80, 60);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    /// The picture of the plane and nothing else.
    QImage picture() {
        const auto whole = window.grabWindow();
        const auto ratio = window.effectiveDevicePixelRatio();
        return whole.copy(wholePixels({plane->position(), plane->size()}, ratio));
    }

    DesktopAppearance appearance;
    ViewEngine engine{appearance};
    QQuickWindow window;
    std::unique_ptr<QQuickItem> plane;
};

TEST_F(PlanesOnScreen, roundCorners_areTheSameOnAllSides) {
    for (const auto& place : {QPointF(4, 8), QPointF(5, 7), QPointF(6.5, 9.5), QPointF(7, 13)}) {
        show({{"color", QColor(Qt::white)}, {"outline", QColor(Qt::red)}, {"outlineWidth", 1}, {"radius", 5}},
             {36, 20}, place);
        const auto drawn = picture();
        EXPECT_LE(difference(drawn, drawn.mirrored(true, false)), smoothness) << place.x();
        EXPECT_LE(difference(drawn, drawn.mirrored(false, true)), smoothness) << place.y();
        EXPECT_EQ(drawn.pixelColor(drawn.width() / 2, 0), QColor(Qt::red));
        EXPECT_EQ(drawn.pixelColor(drawn.width() / 2, drawn.height() / 2 + 3), QColor(Qt::white));
    }
}

TEST_F(PlanesOnScreen, edges_areSharp) {
    for (const auto& place : {QPointF(4, 8), QPointF(5, 7), QPointF(7, 13)}) {
        show({{"color", QColor(Qt::white)}, {"outlineWidth", 0}, {"radius", 0}}, {33, 1}, place);
        const auto whole = window.grabWindow().convertToFormat(QImage::Format_RGB32);
        for (int y = 0; y < whole.height(); ++y) {
            for (int x = 0; x < whole.width(); ++x) {
                const auto color = whole.pixelColor(x, y);
                ASSERT_TRUE(color == Qt::black || color == Qt::white) << x << ", " << y;
            }
        }
    }
}

TEST_F(PlanesOnScreen, outlineOfAScaledPlane_isScaledWithIt) {
    show({{"color", QColor(Qt::white)}, {"outline", QColor(Qt::red)}, {"outlineWidth", 8}, {"radius", 0}},
         {40, 40}, {4, 8});
    plane->setTransformOrigin(QQuickItem::TopLeft);
    plane->setScale(0.5);
    const auto whole = window.grabWindow();
    const auto ratio = window.effectiveDevicePixelRatio();
    const int row = static_cast<int>((8 + 10) * ratio);
    int outline = 0;
    for (int x = 0; x < static_cast<int>((4 + 10) * ratio); ++x)
        outline += whole.pixelColor(x, row) == QColor(Qt::red) ? 1 : 0;
    EXPECT_EQ(outline, std::lround(4 * ratio));
}

TEST_F(PlanesOnScreen, planeWhoseParentMoves_isOnWholePixelsAgain) {
    show({{"color", QColor(Qt::white)}, {"outlineWidth", 0}, {"radius", 6}}, {20, 20}, {4, 8});
    picture();
    window.contentItem()->setPosition({0.5, 0.5});
    window.contentItem()->setPosition({0, 0});
    plane->setPosition({5, 9});
    const auto drawn = picture();
    EXPECT_LE(difference(drawn, drawn.mirrored(true, true)), smoothness);
}

} // namespace
