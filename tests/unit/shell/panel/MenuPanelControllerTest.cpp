// SPDX-License-Identifier: MIT
#include "shell/panel/MenuPanelController.h"

#include "FakeMenuPanelWindow.h"
#include "FakePointerMonitor.h"
#include "FakeStatusItem.h"
#include "PanelFixture.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;
using State = MenuBarController::State;

namespace {

class MenuPanel : public PanelTest {
protected:
    MenuPanel() { actor.settle(); }

    FakeStatusItem item;
    FakePointerMonitor pointer;
    FakeMenuPanelWindow* window = nullptr; ///< once it has been made
    MenuPanelController panel{menuBar, settings, stats, {actor, item, pointer, [this] {
                                                             auto made =
                                                                 std::make_unique<FakeMenuPanelWindow>(actor);
                                                             window = made.get();
                                                             return made;
                                                         }}};
};

TEST_F(MenuPanel, item_followsStateAndIndicators) {
    actor.settle();
    EXPECT_TRUE(item.visible);
    EXPECT_EQ(item.symbol, "waveform.badge.microphone");
    EXPECT_EQ(item.toolTip, "Talvera");
    menuBar.state.set(State::Recording);
    actor.settle();
    EXPECT_EQ(item.symbol, "mic.fill");
    EXPECT_EQ(item.toolTip, "Listening…");
    menuBar.state.set(State::Idle);
    settings.targetLanguageCode.set("en");
    actor.settle();
    EXPECT_EQ(item.symbol, "translate");
    settings.aiCleanupEnabled.set(true);
    actor.settle();
    EXPECT_EQ(item.symbol, "wand.and.sparkles");
}

TEST_F(MenuPanel, click_opensAndTheNextOneCloses) {
    EXPECT_EQ(window, nullptr); // nothing is made before it is needed
    item.click();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(pointer.isWatched());
    item.click();
    EXPECT_FALSE(pointer.isWatched());
    actor.advance(seconds(0.1));
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MenuPanel, open_hangsBelowTheItem) {
    item.click();
    EXPECT_EQ(window->frame(), QRect(862, 32, 300, 480));
}

TEST_F(MenuPanel, eachOpening_makesTheContentAnewAndRefreshesTheStatistics) {
    item.click();
    item.click();
    dictate(80, 10);
    EXPECT_EQ(stats.lastWeekStats.get(), (WeeklyStats{0, 0}));
    item.click();
    EXPECT_EQ(stats.lastWeekStats.get(), (WeeklyStats{110, 1}));
    EXPECT_EQ(window->contentsMade, 2);
}

TEST_F(MenuPanel, lowContent_isAHundredHigh) {
    item.click();
    item.click();
    window->contentHeight = 40;
    item.click();
    EXPECT_EQ(window->frame().height(), 100);
}

TEST_F(MenuPanel, escape_closesAndIsSwallowed) {
    item.click();
    EXPECT_TRUE(window->onKeyDown(Qt::Key_Escape));
    EXPECT_FALSE(panel.isOpen());
}

TEST_F(MenuPanel, anyOtherKey_reachesTheContent) {
    item.click();
    for (const auto key : {Qt::Key_Return, Qt::Key_A, Qt::Key_Tab, Qt::Key_F1})
        EXPECT_FALSE(window->onKeyDown(key));
    EXPECT_TRUE(panel.isOpen());
}

TEST_F(MenuPanel, pressElsewhere_closes) {
    item.click();
    pointer.press({10, 700});
    EXPECT_FALSE(panel.isOpen());
    EXPECT_FALSE(pointer.isWatched());
}

TEST_F(MenuPanel, pressInThePanel_leavesItOpen) {
    item.click();
    pointer.press(window->frame().center());
    EXPECT_TRUE(panel.isOpen());
}

TEST_F(MenuPanel, pressOnTheItem_isLeftToTheClick) {
    item.click();
    pointer.press({1010, 10});
    EXPECT_TRUE(panel.isOpen());
    item.click();
    EXPECT_FALSE(panel.isOpen());
}

TEST_F(MenuPanel, trayThatTellsNoPlace_clickOnTheItemStillCloses) {
    item.place = QRect(1010, 10, 1, 1);
    item.click();
    pointer.press({1012, 12}); // the press of the click that is told later
    actor.advance(seconds(0.15));
    item.click();
    EXPECT_FALSE(panel.isOpen());
    item.click();
    EXPECT_TRUE(panel.isOpen());
}

TEST_F(MenuPanel, clickLongAfterAPressElsewhere_opens) {
    item.click();
    pointer.press({10, 700});
    actor.advance(seconds(0.5));
    item.click();
    EXPECT_TRUE(panel.isOpen());
}

TEST_F(MenuPanel, keyboardGoesElsewhere_closesInATurnOfItsOwn) {
    item.click();
    window->onResignKey();
    EXPECT_TRUE(panel.isOpen());
    actor.settle();
    EXPECT_FALSE(panel.isOpen());
}

TEST_F(MenuPanel, clickSoonAfterEscape_opensThoughTheKeyboardWentElsewhereMeanwhile) {
    item.click();
    window->onKeyDown(Qt::Key_Escape);
    window->onResignKey(); // which is the end of the panel itself
    actor.advance(seconds(0.2));
    item.click();
    EXPECT_TRUE(panel.isOpen());
}

TEST_F(MenuPanel, openedAgainDuringItsFade_stays) {
    item.click();
    window->onKeyDown(Qt::Key_Escape);
    actor.advance(seconds(0.05));
    item.click();
    actor.advance(seconds(1));
    EXPECT_TRUE(window->isVisible());
}

TEST_F(MenuPanel, iconHiddenWhileOpen_panelStaysOpen) {
    item.click();
    settings.showMenuBarIcon.set(false);
    actor.settle();
    EXPECT_FALSE(item.visible);
    EXPECT_TRUE(panel.isOpen());
    EXPECT_TRUE(window->isVisible());
    settings.showMenuBarIcon.set(true);
    actor.settle();
    EXPECT_TRUE(item.visible);
}

TEST_F(MenuPanel, noTray_openGoesToTheCorner) {
    item.place.reset();
    panel.open();
    EXPECT_EQ(window->frame(), QRect(976, 32, 300, 480));
}

TEST_F(MenuPanel, contentGrowsWhileOpen_theFrameFollowsFromTheSamePlace) {
    item.click();
    item.place = QRect(40, 10, 24, 16); // the tray moves its items; an open panel stays where it is
    window->contentHeight = 560;
    window->onFittingHeightChanged();
    EXPECT_EQ(window->frame(), QRect(862, 32, 300, 560));
}

TEST_F(MenuPanel, contentChangesDuringTheFade_nothingMoves) {
    item.click();
    panel.close();
    window->contentHeight = 560;
    window->onFittingHeightChanged();
    EXPECT_EQ(window->frame().height(), 480);
}

TEST_F(MenuPanel, openTwice_isOneOpenPanel) {
    panel.open();
    panel.open();
    EXPECT_TRUE(panel.isOpen());
    panel.close();
    EXPECT_FALSE(pointer.isWatched());
}

} // namespace
