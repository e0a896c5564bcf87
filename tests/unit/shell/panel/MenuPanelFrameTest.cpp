// SPDX-License-Identifier: MIT
#include "shell/panel/menuPanelFrame.h"
#include "PrintQt.h"
#include "shell/panel/durationText.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

const ScreenArea panelAbove{{0, 0, 1280, 800}, {0, 28, 1280, 772}};
const ScreenArea panelBelow{{0, 0, 1280, 800}, {0, 0, 1280, 760}};

TEST(MenuPanelFrame, itemInTheMiddle_panelIsCentredBelowIt) {
    EXPECT_EQ(menuPanelFrame(QRect(600, 0, 24, 28), panelAbove, 480), QRect(462, 32, 300, 480));
}

TEST(MenuPanelFrame, itemNearTheRightEdge_panelStopsFourPixelsFromTheVisibleFrame) {
    const auto frame = menuPanelFrame(QRect(1250, 0, 24, 28), panelAbove, 480);
    EXPECT_EQ(frame.x() + frame.width(), 1280 - 4);
}

TEST(MenuPanelFrame, itemNearTheLeftEdge_panelStopsFourPixelsFromTheVisibleFrame) {
    EXPECT_EQ(menuPanelFrame(QRect(2, 0, 24, 28), panelAbove, 480).x(), 4);
}

TEST(MenuPanelFrame, screenNarrowerThanThePanel_leftEdgeWins) {
    const ScreenArea narrow{{0, 0, 200, 800}, {0, 0, 200, 800}};
    EXPECT_EQ(menuPanelFrame(QRect(180, 0, 20, 20), narrow, 480).x(), 4);
}

TEST(MenuPanelFrame, itemAtTheBottom_panelOpensAboveIt) {
    const auto frame = menuPanelFrame(QRect(1000, 764, 24, 32), panelBelow, 480);
    EXPECT_EQ(frame.y() + frame.height(), 760 - 4);
    const auto free = menuPanelFrame(QRect(1000, 700, 24, 24), panelBelow, 480);
    EXPECT_EQ(free.y() + free.height(), 700 - 4);
}

TEST(MenuPanelFrame, itemOnTheSecondScreen_panelStaysOnIt) {
    const ScreenArea second{{1280, 0, 1920, 1080}, {1280, 0, 1920, 1080}};
    EXPECT_EQ(menuPanelFrame(QRect(1290, 0, 24, 24), second, 480).x(), 1284);
}

TEST(MenuPanelFrame, higherThanTheScreen_isAsHighAsTheVisibleFrame) {
    const ScreenArea low{{0, 0, 640, 400}, {0, 20, 640, 380}};
    EXPECT_EQ(menuPanelFrame(QRect(300, 0, 20, 20), low, 480), QRect(160, 24, 300, 372));
}

TEST(MenuPanelFrame, noItem_goesToTheCornerOfTrays) {
    EXPECT_EQ(menuPanelFrame(std::nullopt, panelAbove, 480), QRect(976, 32, 300, 480));
    EXPECT_EQ(menuPanelFrame(std::nullopt, panelBelow, 480), QRect(976, 276, 300, 480));
}

TEST(MenuPanelFrame, noScreenAtAll_isAtTheOrigin) {
    EXPECT_EQ(menuPanelFrame(QRect(600, 0, 24, 28), {}, 480).topLeft(), QPoint(4, 4));
}

TEST(DurationText, changesUnitAtTheFullMinuteAndTheFullHour) {
    EXPECT_EQ(durationText(0), "0s");
    EXPECT_EQ(durationText(45), "45s");
    EXPECT_EQ(durationText(59), "59s");
    EXPECT_EQ(durationText(60), "1m");
    EXPECT_EQ(durationText(12 * 60 + 59), "12m");
    EXPECT_EQ(durationText(3599), "59m");
    EXPECT_EQ(durationText(3600), "1h 0m");
    EXPECT_EQ(durationText(2 * 3600 + 5 * 60 + 30), "2h 5m");
    EXPECT_EQ(durationText(100 * 3600), "100h 0m");
}

} // namespace
