// SPDX-License-Identifier: MIT
// The main job in a Wayland session: hold the keys, speak, let go, and the words stand at the cursor, in
// programs of Wayland's and of X's alike.
#include "OnWayland.h"

using namespace talvera::test;

namespace {

class DictationOnWayland : public OnWayland {
protected:
    /// Two alphabets, one after the other.
    void dictateMixedTextInto(Receiver& receiver) {
        dictateInto(receiver);
        const QString russian = "Пожалуйста, отправьте отчёт.";
        dictateInto(receiver, russian, spoken(russian, "ru"));
    }
};

} // namespace

TEST_F(DictationOnWayland, intoATerminal_arrives) {
    startAgent();
    Receiver terminal(Receiver::Kind::WaylandTerminal);
    dictateMixedTextInto(terminal);
}

TEST_F(DictationOnWayland, intoAGtkEditor_arrives) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    dictateMixedTextInto(editor);
}

TEST_F(DictationOnWayland, intoAnXProgram_arrives) {
    startAgent();
    const XProgramsOnly x11;
    Receiver editor(Receiver::Kind::Gtk);
    dictateMixedTextInto(editor);
}

TEST_F(DictationOnWayland, intoATerminalByPaste_isPasted) {
    startAgent(pasting);
    Receiver terminal(Receiver::Kind::WaylandTerminal);
    dictateMixedTextInto(terminal);
}

TEST_F(DictationOnWayland, intoAGtkEditorByPaste_isPastedAndStaysOnTheClipboard) {
    startAgent(pasting);
    Receiver editor(Receiver::Kind::Gtk);
    dictateMixedTextInto(editor);
    EXPECT_TRUE(clipboardBecomes("Пожалуйста, отправьте отчёт."));
}

TEST_F(DictationOnWayland, intoAnXProgramByPaste_isPasted) {
    startAgent(pasting);
    const XProgramsOnly x11;
    Receiver editor(Receiver::Kind::Gtk);
    dictateMixedTextInto(editor);
}

TEST_F(DictationOnWayland, modifierLetGoFirst_staysOutOfTheText) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    pressHotkey();
    agent->await("menu recording");
    voice.sayAndWait(spoken(sentence));
    keys.release(Key::leftControl);
    keys.release(Key::space);
    agent->await("menu transcribing");
    keys.release(Key::leftAlt);
    EXPECT_TRUE(isWritten(editor, sentence));
    agent->await("menu idle");
}

TEST_F(DictationOnWayland, tapping_beginsAndEnds) {
    startAgent({{"hotkeyTapToToggle", true}});
    Receiver editor(Receiver::Kind::Gtk);
    pressHotkey();
    releaseHotkey();
    agent->await("menu recording");
    voice.sayAndWait(spoken(sentence));
    pressHotkey();
    releaseHotkey();
    EXPECT_TRUE(isWritten(editor, sentence));
    agent->await("menu idle");
}
