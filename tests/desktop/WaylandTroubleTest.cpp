// SPDX-License-Identifier: MIT
// What can come in between in a Wayland session: the user is somewhere else, the agent dies.
#include "OnWayland.h"
#include "RecogniserGate.h"

#include <optional>

using namespace talvera::test;

namespace {

class FocusOnWayland : public OnWayland {
protected:
    /// Dictates into an editor; when this returns the recognition waits to be let in.
    void dictateInto(std::optional<Receiver>& editor, const QJsonObject& preferences = {},
                     const QString& text = sentence) {
        startAgent(preferences, gate.program());
        editor.emplace(Receiver::Kind::Gtk, "the editor");
        holdAndSay(spoken(text));
        gate.awaitRun();
    }
    void expectNotice(const QString& text) {
        const auto notice = agent->await("hud notice");
        EXPECT_TRUE(notice.contains(text)) << notice.toStdString();
    }

    /// The words that follow name the keys to paste with.
    static inline const QString onClipboard = QStringLiteral(" — text copied to clipboard.");

    RecogniserGate gate;
};

class DeathOnWayland : public OnWayland {};

} // namespace

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

TEST_F(FocusOnWayland, windowLeftWhileItIsTypedInto_theRestGoesNowhereAndAllIsOnTheClipboard) {
    const Receiver other(Receiver::Kind::WaylandTerminal, "the other window");
    std::optional<Receiver> editor;
    dictateInto(editor, {}, longText);
    gate.letIn();
    ASSERT_TRUE(
        editor->waitFor([](const QString& text) { return text.size() >= 5; }, AgentProcess::patience));
    compositor::turnTo(other.process());
    expectNotice("Focus changed — the whole text is on the clipboard.");
    EXPECT_TRUE(clipboardBecomes(longText));
    EXPECT_LT(editor->text().size(), longText.size());
    EXPECT_TRUE(longText.startsWith(editor->text())) << editor->text().toStdString();
    EXPECT_EQ(other.text(), "");
}

TEST_F(DeathOnWayland, killedAtRest_givesTheKeysBack) {
    startAgent();
    agent->kill();
    expectKeysAreTheUsersAgain();

    startAgentAgain();
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
}

TEST_F(DeathOnWayland, killedWhileItListens_givesTheKeysBack) {
    startAgent();
    pressHotkey();
    agent->await("menu recording");
    agent->kill();
    releaseHotkey();
    expectKeysAreTheUsersAgain();
}

TEST_F(DeathOnWayland, killedWhileItRecognises_givesTheKeysBack) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    const Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(sentence));
    gate.awaitRun();
    agent->kill();
    expectKeysAreTheUsersAgain();
    EXPECT_EQ(editor.text(), "");
}

TEST_F(DeathOnWayland, killedWhileItTypes_givesTheKeysBackWithNoneDown) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(longText));
    ASSERT_TRUE(
        editor.waitFor([](const QString& typed) { return !typed.isEmpty(); }, AgentProcess::patience));
    agent->kill();
    keys.tap(Key::q); // a letter that the text doesn't have: nothing comes behind it
    ASSERT_TRUE(editor.waitFor([](const QString& typed) { return typed.contains(u'q'); }));
    EXPECT_TRUE(editor.waitForKeysDown(false));
    const auto typed = editor.text().remove(u'q');
    EXPECT_LT(typed.size(), longText.size());
    EXPECT_TRUE(longText.startsWith(typed)) << typed.toStdString();
    expectKeysAreTheUsersAgain();
}
