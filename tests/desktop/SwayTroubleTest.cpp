// SPDX-License-Identifier: MIT
// What can come in between in a sway session: the user is somewhere else, sway begins anew, the agent dies.
#include "OnSway.h"
#include "RecogniserGate.h"

#include <QProcess>

#include <optional>

using namespace talvera::test;

namespace {

class FocusOnSway : public OnSway {
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

/// The bindings that keep Talvera's hotkey from programs, as sway's user could take them away.
QStringList bindings() {
    QStringList all;
    for (const auto* more : {"", "Shift+", "Mod4+", "Shift+Mod4+"})
        all << QStringLiteral("unbindcode %1Ctrl+Mod1+65").arg(more);
    return all;
}

bool isDone(const QString& command) {
    return QProcess::execute("swaymsg", {"-q", command}) == 0;
}

class DeathOnSway : public OnSway {
protected:
    /// Nothing is left at sway of an agent that has died. A terminal has read the chord once it has read the
    /// key behind it.
    void expectKeysAreTheUsersAgain() {
        const Receiver terminal(Receiver::Kind::WaylandTerminal, "the user's terminal");
        const QChar controlSpace(0);
        EXPECT_TRUE(eventually([&] {
            pressHotkey();
            releaseHotkey();
            keys.tap(Key::a);
            return terminal.text().contains(controlSpace);
        }));
        for (const auto& binding : bindings())
            EXPECT_FALSE(isDone(binding)) << binding.toStdString();
    }
};

class ReloadOnSway : public OnSway {};

} // namespace

TEST_F(FocusOnSway, windowLeftDuringRecognition_isBroughtBackAndSaidSo) {
    std::optional<Receiver> editor;
    dictateInto(editor);
    Receiver other(Receiver::Kind::WaylandTerminal, "the other window");
    gate.letIn();
    expectNotice("Pasted in ");
    EXPECT_TRUE(isWritten(*editor, sentence));
    EXPECT_EQ(other.text(), "");
}

TEST_F(FocusOnSway, windowLeftForAnXProgram_isBroughtBackAndPasted) {
    std::optional<Receiver> editor;
    dictateInto(editor, pasting);
    const XProgramsOnly x11;
    Receiver other(Receiver::Kind::Gtk, "the other window");
    gate.letIn();
    expectNotice("Pasted in ");
    EXPECT_TRUE(isWritten(*editor, sentence));
    EXPECT_EQ(other.text(), "");
}

TEST_F(FocusOnSway, windowLeftInClipboardMode_staysAndTheTextIsOnTheClipboard) {
    std::optional<Receiver> editor;
    dictateInto(editor, {{"focusProtectionMode", "clipboardOnly"}});
    Receiver other(Receiver::Kind::Gtk, "the other window");
    gate.letIn();
    expectNotice("Focus changed" + onClipboard);
    EXPECT_TRUE(clipboardBecomes(sentence));

    keys.press(Key::leftControl); // pasted where the user is now
    keys.tap(Key::v);
    keys.release(Key::leftControl);
    EXPECT_TRUE(isWritten(other, sentence));
    EXPECT_EQ(editor->text(), "");
}

TEST_F(FocusOnSway, windowClosedDuringRecognition_textIsOnTheClipboard) {
    std::optional<Receiver> editor;
    dictateInto(editor);
    editor.reset();
    gate.letIn();
    expectNotice(" closed" + onClipboard);
    EXPECT_TRUE(clipboardBecomes(sentence));
}

TEST_F(FocusOnSway, windowLeftWhileItIsTypedInto_theRestGoesNowhereAndAllIsOnTheClipboard) {
    const Receiver other(Receiver::Kind::WaylandTerminal, "the other window");
    std::optional<Receiver> editor;
    dictateInto(editor, {}, longText);
    gate.letIn();
    ASSERT_TRUE(
        editor->waitFor([](const QString& text) { return text.size() >= 5; }, AgentProcess::patience));
    tellSway("[title=\"the other window\"] focus");
    expectNotice("Focus changed — the whole text is on the clipboard.");
    EXPECT_TRUE(clipboardBecomes(longText));
    EXPECT_LT(editor->text().size(), longText.size());
    EXPECT_TRUE(longText.startsWith(editor->text())) << editor->text().toStdString();
    EXPECT_EQ(other.text(), "");
}

TEST_F(ReloadOnSway, configurationReadAgain_theHotkeyGoesOnWorking) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    // One of the agent's bindings that this dictation doesn't need: it is there again when all are.
    const auto takeOneAway = bindings().at(1);
    ASSERT_TRUE(isDone(takeOneAway));
    ASSERT_FALSE(isDone(takeOneAway));
    tellSway("reload");
    EXPECT_TRUE(eventually([&] { return isDone(takeOneAway); }));
    dictateInto(editor);
}

TEST_F(ReloadOnSway, hotkeyThatTheUserBindsMeanwhile_isSaidToBeTakenAsLongAsItIs) {
    startAgent();
    {
        const UsersConfiguration theirs("bindsym Ctrl+Mod1+space nop theirs\n");
        agent->await("hud notice Another program uses your hotkey — choose another one warn");
        EXPECT_EQ(status()["hotkey"].toString(), "taken");
    }
    EXPECT_TRUE(eventually([&] { return status()["hotkey"].toString() == "watching"; }));
}

TEST_F(DeathOnSway, ended_givesTheKeysBack) {
    startAgent();
    for (const auto& binding : bindings())
        EXPECT_TRUE(isDone(binding)) << binding.toStdString();
    tellSway("reload");
    ASSERT_TRUE(eventually([] { return isDone(bindings().at(1)); }));
    EXPECT_EQ(agent->end(), 0);
    expectKeysAreTheUsersAgain();
}

TEST_F(DeathOnSway, killedAtRest_givesTheKeysBack) {
    startAgent();
    agent->kill();
    expectKeysAreTheUsersAgain();

    startAgentAgain();
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
}

TEST_F(DeathOnSway, killedWhileItListens_givesTheKeysBack) {
    startAgent();
    pressHotkey();
    agent->await("menu recording");
    agent->kill();
    releaseHotkey();
    expectKeysAreTheUsersAgain();
}

TEST_F(DeathOnSway, killedWhileItRecognises_givesTheKeysBack) {
    RecogniserGate gate;
    startAgent({}, gate.program());
    const Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(sentence));
    gate.awaitRun();
    agent->kill();
    expectKeysAreTheUsersAgain();
    EXPECT_EQ(editor.text(), "");
}

TEST_F(DeathOnSway, killedWhileItTypes_givesTheKeysBackWithNoneDown) {
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
