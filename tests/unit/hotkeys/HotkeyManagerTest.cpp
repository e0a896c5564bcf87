// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyManager.h"

#include "FakeEventTap.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"

#include <gtest/gtest.h>

using namespace talvera;
using Key = HotkeyBinding::SpecialKey;

namespace {

namespace Code {
constexpr std::uint16_t a = 0;
constexpr std::uint16_t space = 49;
constexpr std::uint16_t rightCommand = 54;
constexpr std::uint16_t leftCommand = 55;
constexpr std::uint16_t shift = 56;
constexpr std::uint16_t capsLock = 57;
constexpr std::uint16_t option = 58;
constexpr std::uint16_t control = 59;
constexpr std::uint16_t rightOption = 61;
constexpr std::uint16_t fn = 63;
} // namespace Code

using Calls = std::vector<std::string>;

class HotkeyManagerTest : public testing::Test {
protected:
    HotkeyManagerTest() {
        hotkey.onPressStart = [this] { calls.emplace_back("start"); };
        hotkey.onPressEnd = [this] { calls.emplace_back("end"); };
    }

    void install(const HotkeyBinding& binding = {}) {
        hotkey.setBinding(binding);
        hotkey.install();
        actor.settle();
    }

    void pressControlOption() {
        keyboard.press(Code::control);
        keyboard.press(Code::option);
    }

    /// Sends an event as it stands; true when the application gets it.
    bool passes(KeyEventType type, std::uint16_t keyCode, std::uint64_t flags) {
        return keyboard.send({.type = type, .keyCode = keyCode, .flags = flags}) == Verdict::Pass;
    }

    Calls settled() {
        actor.settle();
        return calls;
    }

    /// The events of one key that reached the application.
    std::vector<KeyEventType> passedOf(std::uint16_t keyCode) const {
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

TEST_F(HotkeyManagerTest, withoutABinding_theDefaultHolds) {
    hotkey.install();
    pressControlOption();
    keyboard.tap(Code::space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, chordHeldWithRepeat_startsOnceAndEndsOnRelease) {
    install();
    pressControlOption();
    keyboard.press(Code::space);
    for (int i = 0; i < 15; ++i)
        keyboard.repeat(Code::space);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(Code::space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    // The first key down and the key up are swallowed, the repeats are not.
    EXPECT_EQ(passedOf(Code::space), std::vector(15, KeyEventType::KeyDown));
}

TEST_F(HotkeyManagerTest, controlReleasedBeforeSpace_endsOnlyWithSpace) {
    install();
    pressControlOption();
    keyboard.press(Code::space);
    keyboard.release(Code::control);
    keyboard.release(Code::option);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(Code::space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    EXPECT_TRUE(passedOf(Code::space).empty());
}

TEST_F(HotkeyManagerTest, spaceBeforeControlAndOption_startsNothing) {
    install();
    keyboard.press(Code::space);
    pressControlOption();
    EXPECT_TRUE(settled().empty());
    keyboard.release(Code::space);
    EXPECT_TRUE(settled().empty());
    EXPECT_EQ(passedOf(Code::space), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
}

TEST_F(HotkeyManagerTest, furtherModifiers_doNotStopAPress) {
    install();
    keyboard.press(Code::shift);
    keyboard.press(Code::leftCommand);
    pressControlOption();
    keyboard.tap(Code::space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    EXPECT_TRUE(passedOf(Code::space).empty());
}

TEST_F(HotkeyManagerTest, tooFewModifiers_passAndDoNotEndAPress) {
    install();
    keyboard.press(Code::control);
    keyboard.tap(Code::space);
    EXPECT_TRUE(settled().empty());

    keyboard.press(Code::option);
    keyboard.press(Code::space);
    keyboard.release(Code::option);
    EXPECT_TRUE(passes(KeyEventType::KeyDown, Code::space, KeyFlag::Control));
    EXPECT_EQ(settled(), Calls{"start"});
    EXPECT_TRUE(hotkey.isPressed());
}

TEST_F(HotkeyManagerTest, otherKeys_pass) {
    install();
    pressControlOption();
    keyboard.tap(Code::a);
    EXPECT_TRUE(settled().empty());
    EXPECT_EQ(passedOf(Code::a), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
    EXPECT_EQ(passedOf(Code::control), std::vector{KeyEventType::FlagsChanged});
}

TEST_F(HotkeyManagerTest, keyUpWithoutAPress_passes) {
    install();
    EXPECT_TRUE(passes(KeyEventType::KeyUp, Code::space, 0xC0000));
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, keyUp_endsAPressWithWhateverFlags) {
    install();
    EXPECT_FALSE(passes(KeyEventType::KeyDown, Code::space, 0xC0000));
    EXPECT_FALSE(passes(KeyEventType::KeyUp, Code::space, 0));
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, bindingChangedDuringAPress_endsItAndTheOldKeysReleasePasses) {
    install();
    pressControlOption();
    keyboard.press(Code::space);
    EXPECT_EQ(settled(), Calls{"start"});
    hotkey.setBinding(HotkeyBinding::chord(0xC0000, Code::a));
    EXPECT_FALSE(hotkey.isPressed());
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    keyboard.release(Code::space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
    EXPECT_EQ(passedOf(Code::space), std::vector{KeyEventType::KeyUp});
}

TEST_F(HotkeyManagerTest, sameBindingAssignedDuringAPress_endsItToo) {
    install();
    pressControlOption();
    keyboard.press(Code::space);
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
    EXPECT_EQ(tap.watchedChord(), (KeyChord{0xC0000, Code::space}));
    hotkey.setBinding(HotkeyBinding::holdSpecial(Key::RightOption));
    EXPECT_EQ(tap.watchedChord(), std::nullopt);
    EXPECT_EQ(tap.watchedKey(), Code::rightOption);
}

TEST_F(HotkeyManagerTest, leftCommandAlone_doesNothingForRightCommand) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    keyboard.tap(Code::leftCommand);
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, rightCommandWithLeftAlreadyDown_startsAPress) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    keyboard.press(Code::leftCommand);
    keyboard.press(Code::rightCommand);
    EXPECT_EQ(settled(), Calls{"start"});
}

TEST_F(HotkeyManagerTest, rightCommandReleasedWithLeftStillDown_goesOnUntilTheNextRelease) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    keyboard.press(Code::rightCommand);
    keyboard.press(Code::leftCommand);
    keyboard.release(Code::rightCommand);
    keyboard.release(Code::leftCommand);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.tap(Code::rightCommand);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, specialKey_isNeverSwallowed) {
    for (const auto key : HotkeyBinding::allSpecialKeys) {
        install(HotkeyBinding::holdSpecial(key));
        keyboard.tap(keyCode(key));
        keyboard.tap(keyCode(key)); // a lock is off again
        EXPECT_EQ(passedOf(keyCode(key)), std::vector(4, KeyEventType::FlagsChanged)) << keyCode(key);
        actor.settle();
        EXPECT_FALSE(hotkey.isPressed());
    }
}

TEST_F(HotkeyManagerTest, specialKeyHeldWithOthers_stillStartsAPress) {
    install(HotkeyBinding::holdSpecial(Key::RightOption));
    keyboard.press(Code::shift);
    keyboard.press(Code::a);
    keyboard.press(Code::rightOption);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(Code::rightOption);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, fn_isHeldLikeTheOthers) {
    install(HotkeyBinding::holdSpecial(Key::Fn));
    keyboard.press(Code::fn);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(Code::fn);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, capsLock_startsWhenItGoesOnAndEndsWhenItGoesOff) {
    install(HotkeyBinding::holdSpecial(Key::CapsLock));
    keyboard.tap(Code::capsLock);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.tap(Code::capsLock);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, specialKeysKeyDownAndKeyUp_areNotLookedAt) {
    install(HotkeyBinding::holdSpecial(Key::RightCommand));
    EXPECT_TRUE(passes(KeyEventType::KeyDown, Code::rightCommand, KeyFlag::Command));
    EXPECT_TRUE(passes(KeyEventType::KeyUp, Code::rightCommand, 0));
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, flagsChangedOfAChordsKey_passes) {
    install();
    EXPECT_TRUE(passes(KeyEventType::FlagsChanged, Code::space, 0xC0000));
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, tapTimedOutDuringAHold_isBackAndThePressGoesOn) {
    install();
    pressControlOption();
    keyboard.press(Code::space);
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.stopListening();
    keyboard.tap(Code::a);
    EXPECT_FALSE(keyboard.taps().front()->isEnabled());
    keyboard.listenAgain();
    EXPECT_TRUE(keyboard.taps().front()->isEnabled());
    EXPECT_TRUE(hotkey.isPressed());
    EXPECT_EQ(settled(), Calls{"start"});
    keyboard.release(Code::space);
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, tapDisabledByTheUser_isEnabledAgain) {
    install();
    auto& tap = *keyboard.taps().front();
    EXPECT_TRUE(passes(KeyEventType::TapDisabledByUserInput, 0, 0));
    EXPECT_TRUE(tap.isEnabled());
    EXPECT_TRUE(settled().empty());
}

TEST_F(HotkeyManagerTest, keyUpThatWasLost_theNextKeyDownPassesAndItsKeyUpEndsThePress) {
    install();
    EXPECT_FALSE(passes(KeyEventType::KeyDown, Code::space, 0xC0000));
    EXPECT_TRUE(passes(KeyEventType::KeyDown, Code::space, 0xC0000));
    EXPECT_EQ(settled(), Calls{"start"});
    EXPECT_FALSE(passes(KeyEventType::KeyUp, Code::space, 0xC0000));
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, callbacks_runInALaterTurn) {
    install();
    pressControlOption();
    keyboard.tap(Code::space);
    EXPECT_TRUE(calls.empty());
    EXPECT_EQ(settled(), (Calls{"start", "end"}));
}

TEST_F(HotkeyManagerTest, callback_isReadWhenItRuns) {
    install();
    pressControlOption();
    keyboard.tap(Code::space);
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
    keyboard.press(Code::space);
    EXPECT_EQ(settled(), Calls{"a text too long for the small buffer"});
}

TEST_F(HotkeyManagerTest, chordOfAnotherProgram_isLoggedAndTold) {
    std::vector<WatchResult> refused;
    hotkey.onBindingRefused = [&](WatchResult result) { refused.push_back(result); };
    keyboard.takenChords = {{0xC0000, Code::space}};
    install();
    EXPECT_EQ(refused, std::vector{WatchResult::ChordTaken});
    EXPECT_EQ(console.logged(), QStringList{"HotkeyManager: another program holds the bound shortcut."});
    hotkey.setBinding(HotkeyBinding()); // as it is; nothing new to tell
    hotkey.setBinding(HotkeyBinding::chord(0xC0000, Code::a));
    actor.settle();
    EXPECT_EQ(refused.size(), 1U);
}

TEST_F(HotkeyManagerTest, keyOfNoKeyboard_isLoggedAndTold) {
    std::vector<WatchResult> refused;
    hotkey.onBindingRefused = [&](WatchResult result) { refused.push_back(result); };
    keyboard.missingKeys = {200};
    install(HotkeyBinding::chord(0xC0000, 200));
    EXPECT_EQ(refused, std::vector{WatchResult::Unavailable});
    EXPECT_EQ(console.logged(), QStringList{"HotkeyManager: no keyboard has the bound key."});
}

} // namespace
