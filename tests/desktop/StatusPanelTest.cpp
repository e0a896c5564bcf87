// SPDX-License-Identifier: MIT
// The item in a real tray and the panel at it, used by mouse and by keyboard.
#include "OtherWindow.h"
#include "PanelTest.h"
#include "Tray.h"
#include "X11Windows.h"

using namespace talvera::test;

namespace {

class StatusPanel : public PanelTest, public testing::WithParamInterface<Tray::Kind> {
protected:
    void openPanel() {
        tray.emplace(GetParam());
        startAgent();
        ASSERT_TRUE(tray->waitForIcon());
        click(tray->icon());
        ASSERT_TRUE(panelComes());
    }

    std::optional<Tray> tray;
};

} // namespace

TEST_P(StatusPanel, clickOnTheItem_opensThePanelAtItAndTheNextOneCloses) {
    openPanel();
    const auto icon = tray->icon();
    const auto frame = *panel();
    EXPECT_EQ(frame.width(), 300);
    EXPECT_LE(frame.left(), icon.x());
    EXPECT_GE(frame.right(), icon.x());
    EXPECT_FALSE(frame.contains(icon));
    click(icon);
    EXPECT_TRUE(panelGoes());
    click(icon);
    EXPECT_TRUE(panelComes());
}

TEST_P(StatusPanel, pressElsewhere_closes) {
    openPanel();
    click({900, 400});
    EXPECT_TRUE(panelGoes());
}

TEST_P(StatusPanel, escape_closesAndReachesNoOtherProgram) {
    OtherWindow other({700, 300, 200, 200}, Qt::darkGreen);
    other.activate();
    openPanel();
    keys.tap(Key::escape);
    EXPECT_TRUE(panelGoes());
    other.activate();
    EXPECT_EQ(other.keys(), 0);
    keys.tap(Key::h);
    EXPECT_EQ(other.awaitKeys(1), 1) << "keys are heard now that the panel has gone";
}

TEST_P(StatusPanel, otherWindowTakesTheKeyboard_closes) {
    OtherWindow other({700, 300, 200, 200}, Qt::darkGreen);
    openPanel();
    other.activate();
    EXPECT_TRUE(panelGoes());
}

TEST_P(StatusPanel, openedAgainRightAfterItClosed_stillClosesWithTheKeyboard) {
    OtherWindow other({700, 300, 200, 200}, Qt::darkGreen);
    openPanel();
    for (int i = 0; i < 3; ++i) {
        keys.tap(Key::escape);
        ASSERT_TRUE(panelGoes());
        click(tray->icon());
        ASSERT_TRUE(panelComes());
    }
    other.activate();
    EXPECT_TRUE(panelGoes());
}

TEST_P(StatusPanel, mouseAlone_choosesALanguageAndSwitchesCleanUp) {
    openPanel();
    clickOn(anyRole, "Translate to");
    clickOn("list item", "English");
    EXPECT_TRUE(becomes("targetLanguageCode", "en"));
    clickOn("check box", "AI Cleanup");
    EXPECT_TRUE(becomes("aiCleanupEnabled", true));
    EXPECT_TRUE(eventually([&] { return shown("check box", "AI Cleanup").is("checked"); }));
    clickOn("check box", "AI Cleanup");
    EXPECT_TRUE(becomes("aiCleanupEnabled", false));
    EXPECT_TRUE(panel().has_value());
}

TEST_P(StatusPanel, keyboardAlone_choosesALanguageAndSwitchesCleanUp) {
    openPanel();
    keys.tap(Key::tab);
    keys.tap(Key::enter); // opens the list, and its search has the keyboard
    for (const auto key : {Key::e, Key::n, Key::g})
        keys.tap(key);
    keys.tap(Key::enter);
    EXPECT_TRUE(becomes("targetLanguageCode", "en"));
    keys.tap(Key::tab);
    keys.tap(Key::enter);
    EXPECT_TRUE(becomes("aiCleanupEnabled", true));
    EXPECT_TRUE(panel().has_value());
}

INSTANTIATE_TEST_SUITE_P(Trays, StatusPanel, testing::Values(Tray::Kind::X11, Tray::Kind::DBus),
                         [](const auto& tray) { return tray.param == Tray::Kind::X11 ? "X11" : "DBus"; });
