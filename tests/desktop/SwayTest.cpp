// SPDX-License-Identifier: MIT
// What of a dictation is sway's own: chords that its user has bound, and what is seen on its screen.
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

class DictationOnSway : public OnSway {};

} // namespace

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
