// SPDX-License-Identifier: MIT
// What can come in between in a Wayland session: the user is somewhere else.
#include "FocusOnWayland.h"

#include <optional>

using namespace talvera::test;

TEST_F(FocusOnWayland, windowLeftDuringRecognition_isBroughtBackAndSaidSo) {
    std::optional<Receiver> editor;
    dictateInto(editor);
    Receiver other(Receiver::Kind::WaylandTerminal, "the other window");
    gate.letIn();
    expectNotice("Pasted in ");
    EXPECT_TRUE(isWritten(*editor, sentence));
    EXPECT_EQ(other.text(), "");
}

TEST_F(FocusOnWayland, windowLeftForAnXProgram_isBroughtBackAndPasted) {
    std::optional<Receiver> editor;
    dictateInto(editor, pasting);
    const XProgramsOnly x11;
    Receiver other(Receiver::Kind::Gtk, "the other window");
    gate.letIn();
    expectNotice("Pasted in ");
    EXPECT_TRUE(isWritten(*editor, sentence));
    EXPECT_EQ(other.text(), "");
}

TEST_F(FocusOnWayland, windowLeftInClipboardMode_staysAndTheTextIsOnTheClipboard) {
    std::optional<Receiver> editor;
    dictateInto(editor, {{"focusProtectionMode", "clipboardOnly"}});
    Receiver other(Receiver::Kind::Gtk, "the other window");
    gate.letIn();
    expectNotice("Focus changed" + onClipboard);
    EXPECT_TRUE(clipboardBecomes(sentence));

    keys.press(Key::leftControl); // pasted where the user is now
    keys.tap(Key::v);
    EXPECT_TRUE(isWritten(other, sentence));
    keys.release(Key::leftControl); // late, as keys may go round by an input method that is
    EXPECT_EQ(editor->text(), "");
}

TEST_F(FocusOnWayland, windowClosedDuringRecognition_textIsOnTheClipboard) {
    std::optional<Receiver> editor;
    dictateInto(editor);
    editor.reset();
    gate.letIn();
    expectNotice(" closed" + onClipboard);
    EXPECT_TRUE(clipboardBecomes(sentence));
}
