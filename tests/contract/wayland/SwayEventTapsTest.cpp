// SPDX-License-Identifier: MIT
// Chords in a sway session, with a program that has the focus.
#include "PrintQt.h"
#include "SwayKeys.h"

#include <gtest/gtest.h>

#include <csignal>

namespace talvera::test {

namespace {

constexpr std::uint64_t controlOption = KeyFlag::Control | KeyFlag::Option;
constexpr KeyChord controlOptionSpace{controlOption, VirtualKey::Space};

/// A mode of the user's, as they write it in the configuration and in commands.
struct Mode {
    QByteArray written;
    QString name;
};

/// Modes whose names have in them what ends a name, or a command, or stands for something else.
const std::vector<Mode> oddModes{
    {R"("lock / leave: l; it's")", "lock / leave: l; it's"},
    {R"('say "hi" / leave: l')", R"(say "hi" / leave: l)"},
    {R"('$$mod back\slash; it"s')", R"($mod back\slash; it"s)"},
};

/// Variables and modes in the configuration.
QByteArray definitionOf(const std::vector<Mode>& modes) {
    QByteArray lines = "set $mod Mod4\n";
    for (const auto& mode : modes)
        lines += "mode " + mode.written + " {\nbindsym Escape mode default\n}\n";
    return lines;
}

class SwayEventTapsTest : public testing::Test {
protected:
    /// Whether the owner comes to have been told this.
    testing::AssertionResult isTold(TapOwner& told, const QStringList& expected) {
        if (SwayKeys::becomes([&] { return told.told == expected; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << told.told.join(' ').toStdString();
    }

    SwayKeys sway;
    TapOwner owner{sway.taps()};
    const std::vector<XKeycode> chord{Key::leftControl, Key::leftAlt, Key::space};
};

TEST_F(SwayEventTapsTest, chord_isToldDownAndUpAndKeptFromTheProgram) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.press(chord);
    EXPECT_TRUE(isTold(owner, {"+49"}));
    EXPECT_EQ(owner.lastFlags, controlOption);
    sway.release({Key::space, Key::leftAlt, Key::leftControl});
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    EXPECT_EQ(sway.takeKeys(), (QStringList{"+37", "+64", "-64", "-37"}));
    EXPECT_FALSE(owner.tap->isBroken());
}

TEST_F(SwayEventTapsTest, chordRepeatedly_isToldEachTime) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.tap(chord);
    sway.tap(chord);
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49", "+49", "-49", "+49", "-49"}));
}

TEST_F(SwayEventTapsTest, modifierLetGoFirst_changesNothing) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.press(chord);
    EXPECT_TRUE(isTold(owner, {"+49"}));
    sway.release({Key::leftControl, Key::space});
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    sway.release({Key::leftAlt});
    EXPECT_EQ(sway.takeKeys().count("+65"), 0);
}

TEST_F(SwayEventTapsTest, furtherModifiersAndLocks_changeNothing) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    using Keys = std::vector<XKeycode>;
    for (const auto& others :
         {Keys{Key::leftShift}, Keys{Key::leftSuper}, Keys{Key::leftShift, Key::leftSuper}}) {
        owner.told.clear();
        sway.press(others);
        sway.tap(chord);
        sway.release(others);
        EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    }
    for (const auto lock : {Key::capsLock, Key::numLock}) {
        owner.told.clear();
        sway.tap({lock});
        sway.tap(chord);
        sway.tap({lock});
        EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    }
}

TEST_F(SwayEventTapsTest, keyWithTooFewModifiers_reachesTheProgram) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.tap({Key::leftControl, Key::space});
    sway.tap({Key::space});
    EXPECT_EQ(sway.takeKeys().count("+65"), 2);
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
}

TEST_F(SwayEventTapsTest, singleKey_isAChordWithoutModifiers) {
    ASSERT_EQ(owner.tap->watchChord({0, VirtualKey::F8}), WatchResult::Watching);
    sway.tap({Key::f8});
    EXPECT_TRUE(isTold(owner, {"+100", "-100"}));
    EXPECT_EQ(sway.takeKeys(), QStringList());
}

// As when the user holds the hotkey and an update ends the agent.
TEST_F(SwayEventTapsTest, chordGivenUpWhileItIsHeld_costsSwayNothing) {
    for (const auto& giveUp : {std::function([&] { owner.tap->watchNothing(); }), std::function([&] {
                                   owner.tap->watchChord({0, VirtualKey::F8});
                               }),
                               std::function([&] { owner.tap.reset(); })}) {
        owner.told.clear();
        ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
        sway.press(chord);
        ASSERT_TRUE(isTold(owner, {"+49"}));
        giveUp();
        sway.release({Key::space, Key::leftAlt, Key::leftControl});
        sway.takeKeys();
        sway.tap(chord);
        const auto reached = sway.takeKeys();
        EXPECT_TRUE(reached.contains("+65") && reached.contains("-65")) << reached.join(' ').toStdString();
    }
}

// Sway never tells the end of such a press.
TEST_F(SwayEventTapsTest, otherKeyStruckMeanwhile_endsThePressWithTheNextOne) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.press(chord);
    sway.tap({Key::a});
    sway.release(chord);
    EXPECT_EQ(sway.takeKeys().count("+38"), 1);
    EXPECT_TRUE(isTold(owner, {"+49"}));
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49", "+49", "-49"}));
}

TEST_F(SwayEventTapsTest, stroke_isToldByItsKeyDownAlone) {
    ASSERT_EQ(owner.tap->watchStroke(controlOptionSpace), WatchResult::Watching);
    sway.tap(chord);
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "+49"}));
    EXPECT_EQ(sway.takeKeys().count("+65"), 0);
}

TEST_F(SwayEventTapsTest, keyAlone_isRefusedAndStaysTheProgramsOwn) {
    EXPECT_FALSE(sway.taps().hearsKeysAlone());
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    EXPECT_EQ(owner.tap->watchKey(VirtualKey::RightCommand), WatchResult::ChordsOnly);
    sway.tap({Key::rightControl});
    sway.tap(chord);
    EXPECT_EQ(sway.takeKeys(), (QStringList{"+105", "-105", "+37", "+64", "+65", "-65", "-64", "-37"}));
    EXPECT_EQ(owner.told, QStringList());
}

TEST_F(SwayEventTapsTest, whatCantBeBound_isUnavailable) {
    EXPECT_EQ(owner.tap->watchChord({controlOption, VirtualKey{200}}), WatchResult::Unavailable);
    EXPECT_EQ(owner.tap->watchChord({KeyFlag::Fn, VirtualKey::Space}), WatchResult::Unavailable);
    EXPECT_EQ(owner.tap->watchChord({KeyFlag::Control, VirtualKey::Shift}), WatchResult::Unavailable);
}

TEST_F(SwayEventTapsTest, chordThatIsNotWatchedAnyMore_isTheProgramsAgain) {
    for (const auto& giveUp :
         {std::function([&] { owner.tap->watchNothing(); }),
          std::function([&] { owner.tap->setEnabled(false); }), std::function([&] { owner.tap.reset(); })}) {
        ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
        giveUp();
        sway.tap(chord);
        EXPECT_EQ(sway.takeKeys().count("+65"), 1);
        EXPECT_EQ(owner.told, QStringList());
        if (owner.tap)
            owner.tap->setEnabled(true);
    }
}

TEST_F(SwayEventTapsTest, twoTapsOnOneChord_theNewestSeesItFirst) {
    TapOwner newer(sway.taps());
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    ASSERT_EQ(newer.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.tap(chord);
    EXPECT_TRUE(isTold(newer, {"+49", "-49"}));
    newer.tap.reset();
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
}

TEST_F(SwayEventTapsTest, bindingOfTheUsers_staysTheirs) {
    sway.configure("set $mod Ctrl+Mod1\nbindsym $mod+space nop theirs\n");
    EXPECT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::ChordTaken);
    EXPECT_EQ(owner.tap->watchChord({controlOption, VirtualKey::A}), WatchResult::Watching);
    EXPECT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::ChordTaken);
    sway.tap(chord);
    EXPECT_TRUE(SwayKeys::becomes([&] { return sway.commands() == QStringList{"nop theirs"}; }));
    EXPECT_EQ(owner.told, QStringList());
}

TEST_F(SwayEventTapsTest, bindingOfTheUsersWithMoreModifiers_staysTheirsAloneOfAll) {
    sway.configure("bindcode Ctrl+Mod1+Shift+65 nop theirs\n");
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.press({Key::leftShift});
    sway.tap(chord);
    sway.release({Key::leftShift});
    EXPECT_TRUE(SwayKeys::becomes([&] { return sway.commands() == QStringList{"nop theirs"}; }));
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
}

TEST_F(SwayEventTapsTest, afterAReload_theChordIsToldAgain) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.configure("");
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    EXPECT_EQ(sway.takeKeys().count("+65"), 0);
}

// With a key struck meanwhile: without one sway 1.7 itself remembers a binding that it has thrown away.
TEST_F(SwayEventTapsTest, reloadDuringAPress_endsIt) {
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.press(chord);
    EXPECT_TRUE(isTold(owner, {"+49"}));
    sway.tap({Key::a});
    sway.configure("");
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    sway.release(chord);
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49", "+49", "-49"}));
}

TEST_F(SwayEventTapsTest, chordThatTheUserLetsGoOf_isToldAfterTheReload) {
    sway.configure("bindsym Ctrl+Alt+Space nop theirs\n");
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::ChordTaken);
    sway.configure("");
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
}

TEST_F(SwayEventTapsTest, chordThatTheUserBindsAndLetsGoOf_isToldEachTimeThatItChanges) {
    std::vector<WatchResult> changes;
    owner.tap->onResultChange = [&](WatchResult result) { changes.push_back(result); };
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    sway.configure("bindsym Ctrl+Alt+Space nop theirs\n");
    EXPECT_TRUE(SwayKeys::becomes([&] { return changes == std::vector{WatchResult::ChordTaken}; }));
    sway.configure("");
    const std::vector both{WatchResult::ChordTaken, WatchResult::Watching};
    EXPECT_TRUE(SwayKeys::becomes([&] { return changes == both; }));
    sway.configure("");
    sway.tap(chord);
    EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
    EXPECT_EQ(changes, both);
}

TEST_F(SwayEventTapsTest, tapThatGoesAsItIsToldOfAChange_isToldNothingMore) {
    TapOwner newer(sway.taps());
    ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    ASSERT_EQ(newer.tap->watchChord(controlOptionSpace), WatchResult::Watching);
    bool isTold = false;
    owner.tap->onResultChange = [&](WatchResult) {
        newer.tap.reset();
        isTold = true;
    };
    newer.tap->onResultChange = [](WatchResult) { ADD_FAILURE() << "it has gone"; };
    sway.configure("bindsym Ctrl+Alt+Space nop theirs\n");
    EXPECT_TRUE(SwayKeys::becomes([&] { return isTold; }));
}

TEST_F(SwayEventTapsTest, chordWatchedWhileTheUserIsInAnotherMode_countsInTheFirstOneAndLeavesThemThere) {
    const SwayIpc ipc(SwayKeys::socket(), SwayKeys::patience);
    sway.configure(definitionOf(oddModes));
    for (const auto& mode : oddModes) {
        ASSERT_TRUE(ipc.run("mode " + mode.written));
        ASSERT_EQ(owner.tap->watchChord(controlOptionSpace), WatchResult::Watching);
        EXPECT_TRUE(SwayKeys::becomes([&] { return sway.modes().count(mode.name) == 2; }));
        EXPECT_EQ(sway.modes().last(), mode.name);
        sway.tap(chord);
        EXPECT_EQ(sway.takeKeys().count("+65"), 1);
        ASSERT_TRUE(ipc.run("mode default"));
        owner.told.clear();
        sway.tap(chord);
        EXPECT_TRUE(isTold(owner, {"+49", "-49"}));
        owner.tap->watchNothing();
    }
}

TEST_F(SwayEventTapsTest, chordOfAProcessThatIsKilled_isTheProgramsAgain) {
    owner.tap.reset();
    for (const bool isHeld : {false, true}) {
        Peer agent(TALVERA_SWAY_HOTKEY_AGENT, {});
        ASSERT_TRUE(says(agent, "ready"));
        sway.press(chord);
        ASSERT_TRUE(says(agent, "start"));
        if (!isHeld)
            sway.release(chord);
        agent.signal(SIGKILL);
        if (isHeld)
            sway.release(chord);
        EXPECT_TRUE(SwayKeys::becomes([&] {
            sway.tap(chord);
            return sway.takeKeys().contains("+65");
        }));
    }
}

TEST_F(SwayEventTapsTest, processThatIsKilledWhileTheUserIsInAnotherMode_leavesThemThere) {
    owner.tap.reset();
    const SwayIpc ipc(SwayKeys::socket(), SwayKeys::patience);
    sway.configure(definitionOf(oddModes));
    for (const auto& mode : oddModes) {
        Peer agent(TALVERA_SWAY_HOTKEY_AGENT, {});
        ASSERT_TRUE(says(agent, "ready"));
        ASSERT_TRUE(ipc.run("mode " + mode.written));
        agent.signal(SIGKILL);
        EXPECT_TRUE(SwayKeys::becomes([&] { return sway.modes().count(mode.name) == 2; }));
        EXPECT_EQ(sway.modes().last(), mode.name);
        ASSERT_TRUE(ipc.run("mode default"));
        sway.tap(chord);
        EXPECT_TRUE(sway.takeKeys().contains("+65"));
    }
}

TEST_F(SwayEventTapsTest, bindingThatTheUserMakesOfItsChord_outlivesAProcessThatIsKilled) {
    owner.tap.reset();
    Peer killed(TALVERA_SWAY_HOTKEY_AGENT, {});
    ASSERT_TRUE(says(killed, "ready"));
    sway.configure("bindcode Ctrl+Mod1+65 nop theirs\n");
    ASSERT_TRUE(SwayKeys::becomes([&] { // its other chord is bound again
        sway.tap({Key::f8});
        return !sway.takeKeys().contains("+74");
    }));
    killed.signal(SIGKILL);
    ASSERT_TRUE(SwayKeys::becomes([&] { // and taken away
        sway.tap({Key::f8});
        return sway.takeKeys().contains("+74");
    }));
    sway.tap(chord);
    EXPECT_TRUE(SwayKeys::becomes([&] { return sway.commands().contains("nop theirs"); }));
}

TEST_F(SwayEventTapsTest, processStartedRightAfterAnotherWasKilled_hasTheChord) {
    owner.tap.reset();
    for (int i = 0; i < 3; ++i) {
        Peer killed(TALVERA_SWAY_HOTKEY_AGENT, {});
        ASSERT_TRUE(says(killed, "ready"));
        killed.signal(SIGKILL);
        Peer agent(TALVERA_SWAY_HOTKEY_AGENT, {});
        ASSERT_TRUE(says(agent, "ready"));
        sway.tap(chord);
        EXPECT_TRUE(says(agent, "start"));
        EXPECT_TRUE(says(agent, "end"));
    }
}

TEST(SwayEventTapsWithoutSway, none_canBeMade) {
    FakeKeyboardLayout layout;
    SwayEventTaps taps("/nowhere", layout);
    EXPECT_EQ(taps.create([](const KeyEvent&) { return Verdict::Pass; }), nullptr);
}

} // namespace

} // namespace talvera::test
