// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyManager.h"

#include "FakeEventTap.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

using namespace talvera;
using Key = HotkeyBinding::SpecialKey;

namespace {

using Calls = std::vector<std::string>;

class HotkeyManagerTest : public testing::Test {
protected:
    HotkeyManagerTest() {
        hotkey.onPressStart = [this] { calls.emplace_back("start"); };
        hotkey.onPressEnd = [this] { calls.emplace_back("end"); };
        hotkey.onOtherKeyWhileHeld = [this] { calls.emplace_back("other"); };
    }

    void install(const HotkeyBinding& binding = {}) {
        hotkey.setBinding(binding);
        hotkey.install();
        actor.settle();
    }

    void pressControlOption() {
        keyboard.press(VirtualKey::Control);
        keyboard.press(VirtualKey::Option);
    }

    /// Sends an event as it stands; true when the application gets it.
    bool passes(KeyEventType type, VirtualKey keyCode, std::uint64_t flags) {
        return keyboard.send({.type = type, .keyCode = keyCode, .flags = flags}) == Verdict::Pass;
    }

    Calls settled() {
        actor.settle();
        return calls;
    }

    /// The events of one key that reached the application.
    std::vector<KeyEventType> passedOf(VirtualKey keyCode) const {
        std::vector<KeyEventType> types;
        for (const auto& event : keyboard.passed()) {
            if (event.keyCode == keyCode)
                types.push_back(event.type);
        }
        return types;
    }

    test::SimulatedMainActor actor;
    test::FakeKeyboard keyboard;
    test::RecordingConsole console;
    HotkeyManager hotkey{actor, keyboard, console};
    Calls calls;
};

TEST_F(HotkeyManagerTest, secondInstall_makesNoSecondTap) {
    install();
    hotkey.install();
    EXPECT_EQ(keyboard.tapsCreated(), 1);
    EXPECT_NE(hotkey.eventTap(), nullptr);
}

TEST_F(HotkeyManagerTest, refusedTap_isLoggedAndTheNextInstallTriesAgain) {
    keyboard.refusesTaps = true;
    hotkey.install();
    EXPECT_EQ(hotkey.eventTap(), nullptr);
    EXPECT_EQ(console.logged(),
              QStringList{"HotkeyManager: failed to create event tap — check Accessibility & "
                          "Input Monitoring permissions."});
    keyboard.refusesTaps = false;
    hotkey.install();
    EXPECT_NE(hotkey.eventTap(), nullptr);
    EXPECT_EQ(console.logged().size(), 1);
}

TEST_F(HotkeyManagerTest, brokenTap_isReplacedByTheNextInstall) {
    install();
    keyboard.breakTaps();
    EXPECT_EQ(hotkey.eventTap(), nullptr);
    hotkey.install();
    EXPECT_NE(hotkey.eventTap(), nullptr);
    EXPECT_EQ(keyboard.tapsCreated(), 2);
    EXPECT_EQ(keyboard.taps().size(), 1U);
    pressControlOption();
    keyboard.tap(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, tapThatBreaksDuringAPress_endsItWhenItIsReplaced) {
    install();
    pressControlOption();
    keyboard.press(VirtualKey::Space);
    keyboard.breakTaps();
    keyboard.release(VirtualKey::Space);
    EXPECT_EQ(settled(), Calls{"start"});
    hotkey.install();
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    keyboard.tap(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end", "start", "end"}));
}

TEST_F(HotkeyManagerTest, withoutABinding_theDefaultHolds) {
    hotkey.install();
    pressControlOption();
    keyboard.tap(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, chordHeldWithRepeat_startsOnceAndEndsOnRelease) {
    install();
    pressControlOption();
    keyboard.press(VirtualKey::Space);
    for (int i = 0; i < 15; ++i)
        keyboard.repeat(VirtualKey::Space);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    // The first key down and the key up are swallowed, the repeats are not.
    EXPECT_EQ(passedOf(VirtualKey::Space), std::vector(15, KeyEventType::KeyDown));
}

TEST_F(HotkeyManagerTest, controlReleasedBeforeSpace_endsOnlyWithSpace) {
    install();
    pressControlOption();
    keyboard.press(VirtualKey::Space);
    keyboard.release(VirtualKey::Control);
    keyboard.release(VirtualKey::Option);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    EXPECT_TRUE(passedOf(VirtualKey::Space).empty());
}

TEST_F(HotkeyManagerTest, spaceBeforeControlAndOption_startsNothing) {
    install();
    keyboard.press(VirtualKey::Space);
    pressControlOption();
    EXPECT_TRUE(settled().empty());
    keyboard.release(VirtualKey::Space);
    EXPECT_TRUE(settled().empty());
    EXPECT_EQ(passedOf(VirtualKey::Space), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
}

TEST_F(HotkeyManagerTest, furtherModifiers_doNotStopAPress) {
    install();
    keyboard.press(VirtualKey::Shift);
    keyboard.press(VirtualKey::Command);
    pressControlOption();
    keyboard.tap(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    EXPECT_TRUE(passedOf(VirtualKey::Space).empty());
}

TEST_F(HotkeyManagerTest, tooFewModifiers_passAndDoNotEndAPress) {
    install();
    keyboard.press(VirtualKey::Control);
    keyboard.tap(VirtualKey::Space);
    EXPECT_TRUE(settled().empty());

    keyboard.press(VirtualKey::Option);
    keyboard.press(VirtualKey::Space);
    keyboard.release(VirtualKey::Option);
    EXPECT_TRUE(passes(KeyEventType::KeyDown, VirtualKey::Space, KeyFlag::Control));
    EXPECT_EQ(settled(), Calls{"start"});
    EXPECT_TRUE(hotkey.isPressed());
}

TEST_F(HotkeyManagerTest, otherKeys_pass) {
    install();
    pressControlOption();
    keyboard.tap(VirtualKey::A);
    EXPECT_TRUE(settled().empty());
    EXPECT_EQ(passedOf(VirtualKey::A), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(passedOf(VirtualKey::Control), std::vector{KeyEventType::FlagsChanged});
}

TEST_F(HotkeyManagerTest, keyUpWithoutAPress_passes) {
    install();
    EXPECT_TRUE(passes(KeyEventType::KeyUp, VirtualKey::Space, 0xC0000));
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, keyUp_endsAPressWithWhateverFlags) {
    install();
    EXPECT_FALSE(passes(KeyEventType::KeyDown, VirtualKey::Space, 0xC0000));
    EXPECT_FALSE(passes(KeyEventType::KeyUp, VirtualKey::Space, 0));
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, bindingChangedDuringAPress_endsItAndTheOldKeysReleasePasses) {
    install();
    pressControlOption();
    keyboard.press(VirtualKey::Space);
    EXPECT_EQ(settled(), Calls{"start"});
    hotkey.setBinding(HotkeyBinding::chord(0xC0000, VirtualKey::A));
    EXPECT_FALSE(hotkey.isPressed());
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    keyboard.release(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    EXPECT_EQ(passedOf(VirtualKey::Space), std::vector{KeyEventType::KeyUp});
}

TEST_F(HotkeyManagerTest, sameBindingAssignedDuringAPress_endsItToo) {
    install();
    pressControlOption();
    keyboard.press(VirtualKey::Space);
    hotkey.setBinding(HotkeyBinding());
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, bindingChangedAtRest_callsNothing) {
    install();
    hotkey.setBinding(HotkeyBinding::holdSpecial(Key::CapsLock));
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, binding_tellsTheTapWhatToWaitFor) {
    install();
    ASSERT_EQ(keyboard.taps().size(), 1U);
    const auto& tap = *keyboard.taps().front();
    EXPECT_TRUE(tap.isEnabled());
    EXPECT_EQ(tap.watchedChord(), (KeyChord{0xC0000, VirtualKey::Space}));
    hotkey.setBinding(HotkeyBinding::holdSpecial(Key::RightOption));
    EXPECT_EQ(tap.watchedChord(), std::nullopt);
    EXPECT_EQ(tap.watchedKey(), VirtualKey::RightOption);
}

TEST_F(HotkeyManagerTest, leftCommandAlone_doesNothingForRightCommand) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    keyboard.tap(VirtualKey::Command);
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, rightCommandWithLeftAlreadyDown_startsAPress) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    keyboard.press(VirtualKey::Command);
    keyboard.press(VirtualKey::RightCommand);
    EXPECT_EQ(settled(), Calls{"start"});
}

TEST_F(HotkeyManagerTest, rightCommandReleasedWithLeftStillDown_goesOnUntilTheNextRelease) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    keyboard.press(VirtualKey::RightCommand);
    keyboard.press(VirtualKey::Command);
    keyboard.release(VirtualKey::RightCommand);
    keyboard.release(VirtualKey::Command);
    EXPECT_EQ(settled(), (Calls{"start", "other"}));
    keyboard.tap(VirtualKey::RightCommand);
    EXPECT_EQ(settled(), (Calls{"start", "other", "end"}));
}

TEST_F(HotkeyManagerTest, specialKey_isNeverSwallowed) {
    for (const auto key : allCases<Key>()) {
        install(HotkeyBinding::holdSpecial(key));
        keyboard.tap(keyCode(key));
        keyboard.tap(keyCode(key)); // a lock is off again
        EXPECT_EQ(passedOf(keyCode(key)), std::vector(4, KeyEventType::FlagsChanged))
            << qPrintable(rawValue(key));
        actor.settle();
        EXPECT_FALSE(hotkey.isPressed());
    }
}

TEST_F(HotkeyManagerTest, specialKeyHeldWithOthers_stillStartsAPress) {
    install(HotkeyBinding::holdSpecial(Key::RightOption));
    keyboard.press(VirtualKey::Shift);
    keyboard.press(VirtualKey::A);
    keyboard.press(VirtualKey::RightOption);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(VirtualKey::RightOption);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, otherKeyStruckWhileASpecialKeyIsHeld_isToldOnceAPress) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    for (const auto other : {VirtualKey::Left, VirtualKey::Shift}) {
        calls.clear();
        keyboard.press(VirtualKey::RightCommand);
        keyboard.tap(other);
        keyboard.tap(VirtualKey::A);
        EXPECT_EQ(settled(), (Calls{"start", "other"}));
        keyboard.release(VirtualKey::RightCommand);
        EXPECT_EQ(settled(), (Calls{"start", "other", "end"}));
    }
}

TEST_F(HotkeyManagerTest, keysHeldBeforeASpecialKeyOrReleasedAfterIt_areNotTold) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    keyboard.press(VirtualKey::A);
    keyboard.press(VirtualKey::Shift);
    keyboard.press(VirtualKey::RightCommand);
    keyboard.release(VirtualKey::A);
    keyboard.release(VirtualKey::Shift);
    keyboard.release(VirtualKey::RightCommand);
    keyboard.tap(VirtualKey::A);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, otherKeyStruckWhileAChordIsHeld_isNotTold) {
    install();
    pressControlOption();
    keyboard.press(VirtualKey::Space);
    keyboard.tap(VirtualKey::A);
    keyboard.release(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, fn_isHeldLikeTheOthers) {
    install(HotkeyBinding::holdSpecial(Key::Fn));
    keyboard.press(VirtualKey::Fn);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(VirtualKey::Fn);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, capsLock_startsWhenItGoesOnAndEndsWhenItGoesOff) {
    install(HotkeyBinding::holdSpecial(Key::CapsLock));
    keyboard.tap(VirtualKey::CapsLock);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.tap(VirtualKey::CapsLock);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, specialKeysKeyDownAndKeyUp_areNotLookedAt) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    EXPECT_TRUE(passes(KeyEventType::KeyDown, VirtualKey::RightCommand, KeyFlag::Command));
    EXPECT_TRUE(passes(KeyEventType::KeyUp, VirtualKey::RightCommand, 0));
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, flagsChangedOfAChordsKey_passes) {
    install();
    EXPECT_TRUE(passes(KeyEventType::FlagsChanged, VirtualKey::Space, 0xC0000));
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, tapTimedOutDuringAHold_isBackAndThePressGoesOn) {
    install();
    pressControlOption();
    keyboard.press(VirtualKey::Space);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.stopListening();
    keyboard.tap(VirtualKey::A);
    EXPECT_FALSE(keyboard.taps().front()->isEnabled());
    keyboard.listenAgain();
    EXPECT_TRUE(keyboard.taps().front()->isEnabled());
    EXPECT_TRUE(hotkey.isPressed());
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, tapDisabledByTheUser_isEnabledAgain) {
    install();
    auto& tap = *keyboard.taps().front();
    EXPECT_TRUE(passes(KeyEventType::TapDisabledByUserInput, {}, 0));
    EXPECT_TRUE(tap.isEnabled());
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, keyUpThatWasLost_theNextKeyDownPassesAndItsKeyUpEndsThePress) {
    install();
    EXPECT_FALSE(passes(KeyEventType::KeyDown, VirtualKey::Space, 0xC0000));
    EXPECT_TRUE(passes(KeyEventType::KeyDown, VirtualKey::Space, 0xC0000));
    EXPECT_EQ(settled(), Calls{"start"});
    EXPECT_FALSE(passes(KeyEventType::KeyUp, VirtualKey::Space, 0xC0000));
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, callbacks_runInALaterTurn) {
    install();
    pressControlOption();
    keyboard.tap(VirtualKey::Space);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, callback_isReadWhenItRuns) {
    install();
    pressControlOption();
    keyboard.tap(VirtualKey::Space);
    hotkey.onPressStart = [this] { calls.emplace_back("other start"); };
    hotkey.onPressEnd = nullptr;
    EXPECT_EQ(settled(), Calls{"other start"});
}

TEST_F(HotkeyManagerTest, callbackThatReplacesItself_livesUntilItEnds) {
    install();
    hotkey.onPressStart = [this, text = std::string("a text too long for the small buffer")] {
        hotkey.onPressStart = nullptr;
        calls.push_back(text);
    };
    pressControlOption();
    keyboard.press(VirtualKey::Space);
    EXPECT_EQ(settled(), Calls{"a text too long for the small buffer"});
}

TEST_F(HotkeyManagerTest, chordOfAnotherProgram_isLoggedAndTold) {
    std::vector<WatchResult> refused;
    hotkey.onBindingRefused() = [&](WatchResult result) { refused.push_back(result); };
    keyboard.takenChords = {{0xC0000, VirtualKey::Space}};
    install();
    EXPECT_EQ(refused, std::vector{WatchResult::ChordTaken});
    EXPECT_EQ(console.logged(), QStringList{"HotkeyManager: another program holds the bound shortcut."});
    hotkey.setBinding(HotkeyBinding()); // as it is; nothing new to tell
    hotkey.setBinding(HotkeyBinding::chord(0xC0000, VirtualKey::A));
    actor.settle();
    EXPECT_EQ(refused.size(), 1U);
}

TEST_F(HotkeyManagerTest, keyOfNoKeyboard_isLoggedAndTold) {
    std::vector<WatchResult> refused;
    hotkey.onBindingRefused() = [&](WatchResult result) { refused.push_back(result); };
    const VirtualKey nowhere{200};
    keyboard.missingKeys = {nowhere};
    install(HotkeyBinding::chord(0xC0000, nowhere));
    EXPECT_EQ(refused, std::vector{WatchResult::Unavailable});
    EXPECT_EQ(console.logged(), QStringList{"HotkeyManager: no keyboard has the bound key."});
}

TEST_F(HotkeyManagerTest, keyAloneWhereChordsAloneAreTold_isLoggedAndTold) {
    std::vector<WatchResult> refused;
    hotkey.onBindingRefused() = [&](WatchResult result) { refused.push_back(result); };
    keyboard.tellsChordsOnly = true;
    install(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    EXPECT_EQ(refused, std::vector{WatchResult::ChordsOnly});
    EXPECT_EQ(console.logged(), QStringList{"HotkeyManager: this session tells of chords alone."});
}

TEST_F(HotkeyManagerTest, watchResult_isWhatCameOfTheBinding) {
    EXPECT_EQ(hotkey.watchResult().get(), std::nullopt);
    keyboard.takenChords.push_back({KeyFlag::Control | KeyFlag::Option, VirtualKey::Space});
    install();
    EXPECT_EQ(hotkey.watchResult().get(), WatchResult::ChordTaken);
    pressControlOption();
    keyboard.tap(VirtualKey::Space); // it has become ours
    EXPECT_EQ(hotkey.watchResult().get(), WatchResult::Watching);
    keyboard.missingKeys.insert(VirtualKey::Fn);
    hotkey.setBinding(HotkeyBinding::holdSpecial(Key::Fn));
    EXPECT_EQ(hotkey.watchResult().get(), WatchResult::Unavailable);
}

TEST_F(HotkeyManagerTest, chordThatTheUserBindsToSomethingElse_isToldWhileItLasts) {
    std::vector<WatchResult> refused;
    hotkey.onBindingRefused() = [&](WatchResult result) { refused.push_back(result); };
    install();
    keyboard.taps().back()->onResultChange(WatchResult::ChordTaken);
    actor.settle();
    EXPECT_EQ(hotkey.watchResult().get(), WatchResult::ChordTaken);
    keyboard.taps().back()->onResultChange(WatchResult::Watching);
    actor.settle();
    EXPECT_EQ(hotkey.watchResult().get(), WatchResult::Watching);
    EXPECT_EQ(refused, std::vector{WatchResult::ChordTaken});
}

TEST_F(HotkeyManagerTest, chordWhileAShortcutIsRecorded_isSwallowedAsEver) {
    install();
    hotkey.setShortcutIsRecorded(true);
    pressControlOption();
    keyboard.tap(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    EXPECT_TRUE(passedOf(VirtualKey::Space).empty());
    EXPECT_EQ(hotkey.presses().get(), 1);
    keyboard.press(VirtualKey::Space);
    hotkey.setShortcutIsRecorded(false); // with the chord down
    keyboard.release(VirtualKey::Space);
    EXPECT_EQ(settled(), (Calls{"start", "end", "start", "end"}));
    EXPECT_TRUE(passedOf(VirtualKey::Space).empty());
    EXPECT_EQ(hotkey.presses().get(), 2);
}

TEST_F(HotkeyManagerTest, chordChosenWhileAShortcutIsRecorded_isListenedForAtOnce) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    hotkey.setShortcutIsRecorded(true);
    EXPECT_EQ(keyboard.taps().at(0)->watchedKey(), std::nullopt);
    hotkey.setBinding(HotkeyBinding::chord(0xC0000, VirtualKey::Space));
    EXPECT_EQ(keyboard.taps().at(0)->watchedChord(), (KeyChord{0xC0000, VirtualKey::Space}));
}

TEST_F(HotkeyManagerTest, keyAloneWhileAShortcutIsRecorded_isNotListenedFor) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    keyboard.press(VirtualKey::RightCommand);
    hotkey.setShortcutIsRecorded(true);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    EXPECT_FALSE(keyboard.taps().at(0)->watchedKey());
    hotkey.setBinding(HotkeyBinding::holdSpecial(Key::RightOption));
    EXPECT_FALSE(keyboard.taps().at(0)->watchedKey());
    hotkey.setShortcutIsRecorded(false);
    EXPECT_EQ(keyboard.taps().at(0)->watchedKey(), VirtualKey::RightOption);
    EXPECT_EQ(hotkey.watchResult().get(), WatchResult::Watching);
}

} // namespace
