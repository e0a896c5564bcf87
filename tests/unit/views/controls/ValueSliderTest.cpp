// SPDX-License-Identifier: MIT
// A slider at scales of which pixels are no whole number; tests/unit/views/CMakeLists.txt runs it at several.
#include "platform/desktop/DesktopAppearance.h"
#include "views/ViewEngine.h"

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>

using namespace talvera;

namespace {

/// The first and the last pixel of a column that isn't of the ground.
std::pair<int, int> extentInColumn(const QImage& picture, int column, const QColor& ground) {
    int first = picture.height();
    int last = -1;
    for (int y = 0; y < picture.height(); ++y) {
        if (picture.pixelColor(column, y) != ground) {
            first = std::min(first, y);
            last = y;
        }
    }
    return {first, last};
}

TEST(SlidersOnScreen, track_runsThroughTheMiddleOfTheKnobOnWholePixels) {
    DesktopAppearance appearance;
    ViewEngine engine(appearance);
    QQuickWindow window;
    window.setColor(Qt::white);
    window.resize(200, 60);
    const auto slider = engine.create("controls/ValueSlider", {{"from", 0}, {"to", 10}, {"shownValue", 5}});
    slider->setParentItem(window.contentItem());
    slider->setSize({180, 32});
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    const auto track = engine.theme().property("mark").value<QColor>();
    for (const auto& place : {QPointF(4, 8), QPointF(5, 7), QPointF(6, 9.5), QPointF(7, 13)}) {
        slider->setPosition(place);
        const auto picture = window.grabWindow().convertToFormat(QImage::Format_RGB32);
        const auto column = [ratio = window.effectiveDevicePixelRatio()](double x) {
            return static_cast<int>(std::lround(x * ratio));
        };
        const auto knob = extentInColumn(picture, column(place.x() + 90), Qt::white);
        const auto line = extentInColumn(picture, column(place.x() + 140), Qt::white);
        EXPECT_GT(line.first - knob.first, 0);
        EXPECT_EQ(line.first - knob.first, knob.second - line.second) << place.x();
        for (int y = line.first; y <= line.second; ++y)
            EXPECT_EQ(picture.pixelColor(column(place.x() + 140), y), track) << place.x();
    }
}

} // namespace
