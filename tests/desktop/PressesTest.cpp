// SPDX-License-Identifier: MIT
// Which presses become a dictation, and which don't.
#include "DesktopTest.h"
#include "RecogniserGate.h"

#include <thread>

using namespace talvera::test;

namespace {

const QJsonObject tapping{{"hotkeyTapToToggle", true}};

class Presses : public DesktopTest {
protected:
    void press(std::chrono::milliseconds length) {
        keys.press(hotkey);
        std::this_thread::sleep_for(length); // what the user does, and nothing that is waited for
        keys.release(hotkey);
    }
};

} // namespace

TEST_F(Presses, oneTapToBeginAndOneToEnd_dictate) {
    startAgent(tapping);
    Receiver editor(Receiver::Kind::Gtk);
    keys.tap(hotkey);
    agent->await("menu recording");
    voice.sayAndWait(spoken("Can you check the invoice today?"));
    keys.tap(hotkey);
    agent->await("menu transcribing");
    EXPECT_TRUE(editor.waitForText("Can you check the invoice today?")) << editor.text().toStdString();
    agent->await("menu idle");
}

TEST_F(Presses, ofThreeTenthsOfASecond_leaveNoTrace) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    press(std::chrono::milliseconds(300));
    EXPECT_EQ(leftFiles(), QStringList());

    // Whatever the brief press has set off would come before or with this.
    holdAndSay(spoken("Good morning."));
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("hud hidden");
    EXPECT_EQ(agent->count("menu recording"), 1);
    EXPECT_EQ(agent->count("hud listening"), 1);
}

TEST_F(Presses, forAShortcutOfTheApplication_leaveNoTraceHoweverLong) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    keys.press(hotkey);
    keys.tap(Key::left);
    std::this_thread::sleep_for(std::chrono::milliseconds(1000)); // what the user does
    keys.tap(Key::left);
    keys.release(hotkey);
    EXPECT_EQ(leftFiles(), QStringList());

    // Whatever that has set off would come before or with this.
    holdAndSay(spoken("Good morning."));
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("hud hidden");
    EXPECT_EQ(agent->count("menu recording"), 1);
    EXPECT_EQ(agent->count("hud listening"), 1);
}

TEST_F(Presses, ofAChordWhoseModifiersStayDown_dontGarbleTheText) {
    startAgent(chordOfCtrlAltSpace());
    Receiver editor(Receiver::Kind::Qt);
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        keys.press(key);
    agent->await("menu recording");
    voice.sayAndWait(spoken("Good morning."));
    keys.release(Key::space);
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
    for (const auto key : {Key::leftAlt, Key::leftControl})
        keys.release(key);
    keys.tap(Key::h); // and nothing is stuck
    EXPECT_TRUE(editor.waitForText("Good morning.h")) << editor.text().toStdString();
}

TEST_F(Presses, duringARecognition_areIgnored) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken("Good morning."));
    gate.awaitRun();
    press(std::chrono::milliseconds(800));
    gate.letIn();
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("menu idle");
    EXPECT_TRUE(isClean());

    gate.letIn();
    holdAndSay(spoken("How are you?"));
    EXPECT_TRUE(editor.waitForText("Good morning.How are you?")) << editor.text().toStdString();
    agent->await("menu idle");
    EXPECT_EQ(agent->count("menu recording"), 2);
}

TEST_F(Presses, ofTapModeDuringARecognition_areIgnored) {
    RecogniserGate gate;
    startAgent(tapping, gate.program());
    Receiver editor(Receiver::Kind::Gtk);
    keys.tap(hotkey);
    agent->await("menu recording");
    voice.sayAndWait(spoken("Good morning."));
    keys.tap(hotkey);
    gate.awaitRun();
    keys.tap(hotkey);
    gate.letIn();
    EXPECT_TRUE(editor.waitForText("Good morning.")) << editor.text().toStdString();
    agent->await("hud hidden");
    EXPECT_EQ(agent->count("menu recording"), 1);
}
