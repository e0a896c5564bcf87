// SPDX-License-Identifier: MIT
// The main job in a sway session: hold the keys, speak, let go, and the words stand at the cursor, in
// programs of Wayland's and of X's alike.
#include "HUDOnScreen.h"
#include "OnSway.h"

#include <QRect>

#include <optional>

using namespace talvera::test;

namespace {

/// Whether the user sees but one colour there.
bool isPlain(const QRect& place) {
    const auto area =
        QStringLiteral("%1,%2 %3x%4").arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height());
    const auto picture = outputOfProgram("grim", {"-t", "ppm", "-g", area, "-"});
    const auto pixels = picture.right(qsizetype(3) * place.width() * place.height());
    return pixels.chopped(3) == pixels.mid(3); // each as the one before it
}

class DictationOnSway : public OnSway {
protected:
    /// Two alphabets, one after the other.
    void dictateMixedTextInto(Receiver& receiver) {
        dictateInto(receiver);
        const QString russian = "Пожалуйста, отправьте отчёт.";
        dictateInto(receiver, russian, spoken(russian, "ru"));
    }
};

} // namespace

TEST_F(DictationOnSway, freshPreferences_haveAChordThatWorksHere) {
    startAgent();
    const auto told = status();
    EXPECT_TRUE(told["keyboard"].toBool());
    EXPECT_TRUE(told["ready"].toBool());
    EXPECT_EQ(told["hotkey"].toString(), "watching");
}

TEST_F(DictationOnSway, keyAloneAsTheHotkey_isSaidNotToWork) {
    const QByteArray binding = R"({"holdSpecial":{"_0":"rightCommand"}})";
    home.setPreferences({{"hotkeyBinding", QJsonObject{{"data", QString::fromLatin1(binding.toBase64())}}}});
    agent.emplace(home);
    agent->await("hud notice A key held alone can't be your hotkey here — choose several, such as "
                 "Ctrl+Alt+Space warn");
    EXPECT_EQ(status()["hotkey"].toString(), "unavailable");
}

TEST_F(DictationOnSway, chordThatTheUserHasBound_isSaidToBeTakenAndStaysTheirs) {
    const UsersConfiguration theirs("bindsym Ctrl+Mod1+space workspace theirs\n");
    home.setPreferences({});
    agent.emplace(home);
    agent->await("hud notice Another program uses your hotkey — choose another one warn");
    EXPECT_EQ(status()["hotkey"].toString(), "taken");
    told({"settings", "hotkey"});
    shown(anyRole, "Another program uses Ctrl+Alt+Space — choose another one");
    pressHotkey();
    releaseHotkey();
    EXPECT_TRUE(eventually([] {
        return outputOfProgram("swaymsg", {"-rt", "get_workspaces"}).contains("\"theirs\"");
    }));
    EXPECT_EQ(agent->count("menu recording"), 0);
    tellSway("workspace 1");
}

TEST_F(DictationOnSway, intoATerminal_isTyped) {
    startAgent();
    Receiver terminal(Receiver::Kind::WaylandTerminal);
    dictateMixedTextInto(terminal);
}

TEST_F(DictationOnSway, intoAGtkEditor_isTyped) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    dictateMixedTextInto(editor);
}

TEST_F(DictationOnSway, intoAnXProgram_isTyped) {
    startAgent();
    const XProgramsOnly x11;
    Receiver editor(Receiver::Kind::Gtk);
    dictateMixedTextInto(editor);
}

TEST_F(DictationOnSway, intoATerminalByPaste_isPasted) {
    startAgent(pasting);
    Receiver terminal(Receiver::Kind::WaylandTerminal);
    dictateMixedTextInto(terminal);
}

TEST_F(DictationOnSway, intoAGtkEditorByPaste_isPastedAndStaysOnTheClipboard) {
    startAgent(pasting);
    Receiver editor(Receiver::Kind::Gtk);
    dictateMixedTextInto(editor);
    EXPECT_TRUE(clipboardBecomes("Пожалуйста, отправьте отчёт."));
}

TEST_F(DictationOnSway, intoAnXProgramByPaste_isPasted) {
    startAgent(pasting);
    const XProgramsOnly x11;
    Receiver editor(Receiver::Kind::Gtk);
    dictateMixedTextInto(editor);
}

TEST_F(DictationOnSway, modifierLetGoFirst_staysOutOfTheText) {
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

TEST_F(DictationOnSway, tapping_beginsAndEnds) {
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

TEST_F(DictationOnSway, hud_isSeenAboveAFullScreenWindowThatKeepsTheFocus) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    tellSway("fullscreen enable");
    pressHotkey();
    agent->await("hud listening");
    HUDOnScreen hud;
    std::optional<QRect> place;
    ASSERT_TRUE(eventually([&] { return (place = hud.place()).has_value(); }));
    EXPECT_TRUE(eventually([&] { return !isPlain(*place); }));
    voice.sayAndWait(spoken(sentence));
    releaseHotkey();
    EXPECT_TRUE(isWritten(editor, sentence));
    agent->await("hud hidden");
    EXPECT_TRUE(eventually([&] { return !hud.place(); }));
    EXPECT_TRUE(eventually([&] { return isPlain(*place); }));
}
