// SPDX-License-Identifier: MIT
// What of a dictation is GNOME's own: chords that another has, programs that must be pasted into, and our
// extension of the Shell, which comes and goes.
#include "OnGnome.h"
#include "RecogniserGate.h"

#include <optional>

using namespace talvera::test;
using talvera::ShellBus;

namespace {

class DictationOnGnome : public OnGnome {};

class ExtensionOnGnome : public OnGnome {
protected:
    ~ExtensionOnGnome() override { switchExtension(true); }
};

} // namespace

TEST_F(DictationOnGnome, intoAGtk4Editor_isWritten) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk4);
    dictateInto(editor);
}

TEST_F(DictationOnGnome, intoAVteTerminal_isWritten) {
    startAgent();
    Receiver terminal(Receiver::Kind::VteTerminal);
    dictateInto(terminal);
}

TEST_F(DictationOnGnome, intoAnXTerminal_isPasted) {
    startAgent();
    Receiver terminal(Receiver::Kind::Terminal);
    dictateInto(terminal);
}

TEST_F(DictationOnGnome, chordOfAnother_isSaidToBeTakenUntilItIsFree) {
    std::optional<ShellBus> other(std::in_place);
    ASSERT_NE(grabHotkey(*other), 0U);
    home.setPreferences({});
    agent.emplace(home);
    agent->await("hud notice Another program uses your hotkey — choose another one warn");
    EXPECT_EQ(status()["hotkey"].toString(), "taken");
    other.reset();
    Receiver editor(Receiver::Kind::Gtk); // who gives keys away does it in a window
    EXPECT_TRUE(eventually([&] { return status()["hotkey"].toString() == "watching"; }));
    dictateInto(editor);
}

TEST_F(ExtensionOnGnome, switchedOffAndOnAgain_theHotkeyGoesOnWorking) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
    switchExtension(false);
    switchExtension(true);
    EXPECT_TRUE(eventually(isHotkeyKept));
    dictateInto(editor);
}

TEST_F(ExtensionOnGnome, switchedOffWhileTheKeysAreHeld_theTextIsOnTheClipboard) {
    startAgent();
    const Receiver editor(Receiver::Kind::Gtk);
    pressHotkey();
    agent->await("menu recording");
    voice.sayAndWait(spoken(sentence));
    switchExtension(false);
    agent->await("menu transcribing");
    releaseHotkey();
    EXPECT_TRUE(clipboardBecomes(sentence));
    agent->await("menu idle");
    EXPECT_EQ(editor.text(), "");
}

TEST_F(ExtensionOnGnome, switchedOffWhileItIsWritten_allIsOnTheClipboard) {
    startAgent();
    Receiver editor(Receiver::Kind::Gtk);
    holdAndSay(spoken(longText));
    ASSERT_TRUE(editor.waitFor([](const QString& text) { return text.size() >= 5; }, AgentProcess::patience));
    switchExtension(false);
    EXPECT_TRUE(clipboardBecomes(longText));
    EXPECT_LT(editor.text().size(), longText.size());
    EXPECT_TRUE(longText.startsWith(editor.text())) << editor.text().toStdString();
}

TEST_F(ExtensionOnGnome, offAtTheStart_isSaidAndWorksOnceItIsOn) {
    switchExtension(false);
    agent.emplace(home);
    EXPECT_TRUE(eventually([&] { return !status()["keyboard"].toBool(true); }));
    EXPECT_TRUE(QString::fromUtf8(told({"status"})).contains("extension of GNOME Shell"));
    switchExtension(true);
    EXPECT_TRUE(eventually([&] { return status()["keyboard"].toBool(); }));
    EXPECT_TRUE(eventually(isHotkeyKept));
    Receiver editor(Receiver::Kind::Gtk);
    dictateInto(editor);
}
