// SPDX-License-Identifier: MIT
// What stands in the panel, what a screen reader tells of it, and what its rows do.
#include "PanelTest.h"

using namespace talvera::test;

namespace {

class PanelRows : public PanelTest {
protected:
    /// The number of dictations or the time saved.
    bool shows(const QString& figure) const { return !shown("label", figure).name.isEmpty(); }
};

bool isControl(const ScreenReader::Element& element) {
    static const QStringList roles{"push button", "check box", "combo box", "list item", "entry", "text"};
    return roles.contains(element.role) || element.is("focusable");
}

} // namespace

TEST_F(PanelRows, dictationAfterThePanel_arrivesAndRaisesTheStatistics) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    openPanel();
    EXPECT_TRUE(shows("Dictations in the last seven days: 0"));
    EXPECT_TRUE(shows("Time saved in the last seven days: 0s"));
    closePanel();

    holdAndSay(spoken("Please send the report tomorrow."));
    EXPECT_TRUE(editor.waitForText("Please send the report tomorrow.")) << editor.text().toStdString();
    agent->await("menu idle");

    openPanel();
    EXPECT_TRUE(shows("Dictations in the last seven days: 1"));
    EXPECT_FALSE(ScreenReader::find(agent->pid(), "label", "Time saved in the last seven days: 0s"));
    closePanel();
    EXPECT_EQ(agent->end(), 0);

    startAgentAgain();
    openPanel();
    EXPECT_TRUE(shows("Dictations in the last seven days: 1"));
    closePanel();
}

TEST_F(PanelRows, everyControl_hasANameForScreenReaders) {
    startAgent();
    openPanel();
    shown("image", "Idle, ready to record");
    EXPECT_EQ(shown(anyRole, "Translate to").description, "Off");
    EXPECT_FALSE(shown("check box", "AI Cleanup").is("checked"));
    for (const auto* row : {"Settings…", "Check for Updates…", "Quit Talvera"})
        shown("push button", row);
    clickOn(anyRole, "Translate to");
    EXPECT_TRUE(shown("list item", "Off (keep source language)").is("selected"));
    for (const auto& element : ScreenReader::read(agent->pid())) {
        if (isControl(element)) {
            EXPECT_NE(element.name, "") << element.role.toStdString();
        }
    }
    keys.tap(Key::escape); // closes the list
    closePanel();
}

TEST_F(PanelRows, recordingWithThePanelOpen_isToldByIt) {
    startAgent();
    openPanel();
    keys.press(hotkey);
    agent->await("menu recording");
    shown("image", "Recording");
    shown("label", "Listening…");
    keys.release(hotkey);
    agent->await("menu idle");
    shown("image", "Idle, ready to record");
    closePanel();
}

TEST_F(PanelRows, quit_endsWithNothingLeft) {
    startAgent();
    openPanel();
    clickOn("push button", "Quit Talvera");
    EXPECT_EQ(agent->awaitEnd(), 0);
    EXPECT_EQ(panel(), std::nullopt);
    EXPECT_EQ(leftFiles(), QStringList());
    EXPECT_TRUE(recognisers().empty());
}
