// SPDX-License-Identifier: MIT
// The main job: hold the key, speak, let go, and the words stand at the cursor.
#include "DesktopTest.h"

using namespace talvera::test;

namespace {

class HoldToDictate : public DesktopTest {
protected:
    void dictateInto(Receiver::Kind kind, const QJsonObject& preferences = {}) {
        const QString sentence = "Please send the report tomorrow.";
        startAgent(preferences);
        Receiver editor(kind);
        holdAndSay(spoken(sentence));
        EXPECT_TRUE(editor.waitForText(sentence)) << editor.text().toStdString();
        agent->await("menu idle");
        agent->await("hud hidden");
    }

    const QJsonObject pasting{{"insertionMode", "paste"}};
};

} // namespace

TEST_F(HoldToDictate, intoAGtkEditor_isTyped) {
    dictateInto(Receiver::Kind::Gtk);
}

TEST_F(HoldToDictate, intoAQtEditor_isTyped) {
    dictateInto(Receiver::Kind::Qt);
}

TEST_F(HoldToDictate, intoATerminal_isTyped) {
    dictateInto(Receiver::Kind::Terminal);
}

TEST_F(HoldToDictate, intoAGtkEditorByPaste_isPastedAndStaysOnTheClipboard) {
    dictateInto(Receiver::Kind::Gtk, pasting);
    EXPECT_TRUE(clipboardBecomes("Please send the report tomorrow."));
}

TEST_F(HoldToDictate, intoAQtEditorByPaste_isPasted) {
    dictateInto(Receiver::Kind::Qt, pasting);
}

TEST_F(HoldToDictate, intoATerminalByPaste_isPasted) {
    dictateInto(Receiver::Kind::Terminal, pasting);
}

TEST_F(HoldToDictate, severalInARow_areAppended) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken("Good morning."));
    EXPECT_TRUE(editor.waitForText("Good morning."));
    agent->await("menu idle");
    holdAndSay(spoken("How are you?"));
    EXPECT_TRUE(editor.waitForText("Good morning.How are you?")) << editor.text().toStdString();
    agent->await("menu idle");
}
