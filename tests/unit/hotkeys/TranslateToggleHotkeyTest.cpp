// SPDX-License-Identifier: MIT
#include "hotkeys/TranslateToggleHotkey.h"

#include "FakeEventTap.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "hotkeys/HotkeyManager.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

constexpr std::uint64_t controlOptionCommand = KeyFlag::Control | KeyFlag::Option | KeyFlag::Command;
const auto chord = HotkeyBinding::chord(controlOptionCommand, VirtualKey::T);

class TranslateToggle : public testing::Test {
protected:
    TranslateToggle() {
        toggle.onTrigger = [this] { ++triggers; };
    }

    void install(const std::optional<HotkeyBinding>& binding = chord) {
        toggle.setBinding(binding);
        toggle.install();
        actor.settle();
    }

    void hold(std::initializer_list<VirtualKey> keys) {
        for (const auto key : keys)
            keyboard.press(key);
    }
    void holdModifiers() { hold({VirtualKey::Control, VirtualKey::Option, VirtualKey::Command}); }

    /// How often it was triggered since the last call.
    int settledTriggers() {
        actor.settle();
        return std::exchange(triggers, 0);
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
    TranslateToggleHotkey toggle{actor, keyboard, console};
    int triggers = 0;
    std::optional<WatchResult> result() { return toggle.watchResult().get(); }
};

TEST_F(TranslateToggle, withoutABinding_passesEverything) {
    install(std::nullopt);
    holdModifiers();
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 0);
    EXPECT_EQ(passedOf(VirtualKey::T), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyUp}));
}

TEST_F(TranslateToggle, specialKey_isIgnoredAsIfAbsent) {
    install(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    keyboard.tap(VirtualKey::RightCommand);
    EXPECT_EQ(settledTriggers(), 0);
    EXPECT_EQ(passedOf(VirtualKey::RightCommand).size(), 2U);
    EXPECT_FALSE(keyboard.taps().at(0)->watchedKey());
    EXPECT_FALSE(toggle.acts());
    EXPECT_EQ(result(), std::nullopt);
}

TEST_F(TranslateToggle, keyHeld_triggersOnceAndPassesTheRepeatsAndTheKeyUp) {
    install();
    holdModifiers();
    keyboard.press(VirtualKey::T);
    for (int i = 0; i < 3; ++i)
        keyboard.repeat(VirtualKey::T);
    keyboard.release(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 1);
    EXPECT_EQ(passedOf(VirtualKey::T), (std::vector{KeyEventType::KeyDown, KeyEventType::KeyDown,
                                                    KeyEventType::KeyDown, KeyEventType::KeyUp}));
}

TEST_F(TranslateToggle, keyDown_triggersInALaterTurn) {
    install();
    holdModifiers();
    keyboard.press(VirtualKey::T);
    EXPECT_EQ(triggers, 0);
    EXPECT_EQ(settledTriggers(), 1);
}

TEST_F(TranslateToggle, triggerWithoutACallback_isHarmless) {
    install();
    toggle.onTrigger = nullptr;
    holdModifiers();
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 0);
}

TEST_F(TranslateToggle, furtherModifiers_doNotStopIt) {
    install();
    hold({VirtualKey::Shift});
    holdModifiers();
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 1);
    EXPECT_EQ(passedOf(VirtualKey::T), std::vector{KeyEventType::KeyUp});
}

TEST_F(TranslateToggle, tooFewModifiers_pass) {
    install();
    hold({VirtualKey::Control, VirtualKey::Option});
    keyboard.tap(VirtualKey::T);
    hold({VirtualKey::Command});
    EXPECT_EQ(settledTriggers(), 0);
    EXPECT_EQ(passedOf(VirtualKey::T).size(), 2U);
}

TEST_F(TranslateToggle, otherKey_passes) {
    install();
    holdModifiers();
    keyboard.tap(VirtualKey::R);
    EXPECT_EQ(settledTriggers(), 0);
    EXPECT_EQ(passedOf(VirtualKey::R).size(), 2U);
}

TEST_F(TranslateToggle, bindingChanged_actsFromThenOn) {
    install();
    toggle.setBinding(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K));
    hold({VirtualKey::Control});
    keyboard.tap(VirtualKey::K);
    EXPECT_EQ(settledTriggers(), 1);
    hold({VirtualKey::Option, VirtualKey::Command});
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 0);
    toggle.setBinding(std::nullopt);
    keyboard.tap(VirtualKey::K);
    EXPECT_EQ(settledTriggers(), 0);
    EXPECT_FALSE(keyboard.taps().at(0)->watchedChord());
}

TEST_F(TranslateToggle, secondInstall_makesNoSecondTap) {
    install();
    toggle.install();
    EXPECT_EQ(keyboard.tapsCreated(), 1);
    EXPECT_NE(toggle.eventTap(), nullptr);
}

TEST_F(TranslateToggle, refusedTap_isLoggedAndTheNextInstallTriesAgain) {
    keyboard.refusesTaps = true;
    install();
    EXPECT_EQ(toggle.eventTap(), nullptr);
    EXPECT_FALSE(toggle.acts());
    EXPECT_EQ(console.logged(),
              QStringList{"TranslateToggleHotkey: failed to create event tap — check Accessibility & "
                          "Input Monitoring permissions."});
    keyboard.refusesTaps = false;
    toggle.install();
    EXPECT_NE(toggle.eventTap(), nullptr);
    EXPECT_TRUE(toggle.acts());
}

TEST_F(TranslateToggle, brokenTap_isReplacedByTheNextInstall) {
    install();
    keyboard.breakTaps();
    EXPECT_EQ(toggle.eventTap(), nullptr);
    EXPECT_FALSE(toggle.acts());
    toggle.install();
    holdModifiers();
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 1);
}

TEST_F(TranslateToggle, tapDisabledByTimeout_isEnabledAgain) {
    install();
    holdModifiers();
    keyboard.stopListening();
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 0);
    keyboard.listenAgain();
    EXPECT_TRUE(keyboard.taps().at(0)->isEnabled());
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 1);
}

TEST_F(TranslateToggle, chordOfAnotherProgram_isToldAndSaidUntilItIsHeard) {
    keyboard.takenChords.push_back({controlOptionCommand, VirtualKey::T});
    install();
    EXPECT_EQ(result(), WatchResult::ChordTaken);
    EXPECT_EQ(console.logged(),
              QStringList{"TranslateToggleHotkey: another program holds the bound shortcut."});
    EXPECT_FALSE(toggle.acts());

    holdModifiers(); // the other program has ended: the tap gets the chord without our asking anew
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 1);
    EXPECT_TRUE(toggle.acts());
}

TEST_F(TranslateToggle, keyThatNoKeyboardHas_isTold) {
    keyboard.missingKeys.insert(VirtualKey::T);
    install();
    EXPECT_EQ(result(), WatchResult::Unavailable);
    EXPECT_FALSE(toggle.acts());
    toggle.setBinding(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K));
    EXPECT_TRUE(toggle.acts());
}

TEST_F(TranslateToggle, sameBindingAgain_isNotAskedForAgain) {
    keyboard.takenChords.push_back({controlOptionCommand, VirtualKey::T});
    install();
    toggle.setBinding(chord);
    actor.settle();
    EXPECT_EQ(console.logged().size(), 1);
}

TEST_F(TranslateToggle, bindingThatCantBeHad_isToldInALaterTurn) {
    std::vector<WatchResult> refusals;
    toggle.onBindingRefused() = [&](WatchResult result) { refusals.push_back(result); };
    keyboard.takenChords.push_back({controlOptionCommand, VirtualKey::T});
    keyboard.missingKeys.insert(VirtualKey::F5);
    toggle.setBinding(chord);
    toggle.install();
    EXPECT_TRUE(refusals.empty());
    actor.settle();
    EXPECT_EQ(refusals, std::vector{WatchResult::ChordTaken});
    toggle.setBinding(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::F5));
    actor.settle();
    EXPECT_EQ(refusals, (std::vector{WatchResult::ChordTaken, WatchResult::Unavailable}));
    toggle.setBinding(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightOption));
    toggle.setBinding(std::nullopt);
    toggle.setBinding(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K));
    actor.settle();
    EXPECT_EQ(refusals.size(), 2U);
}

TEST_F(TranslateToggle, stroke_isCountedAndARepeatIsNot) {
    install();
    holdModifiers();
    keyboard.press(VirtualKey::T);
    keyboard.repeat(VirtualKey::T);
    keyboard.release(VirtualKey::T);
    EXPECT_EQ(toggle.presses().get(), 1);
}

TEST_F(TranslateToggle, tapDisabledByTheUser_isEnabledAgainAndTheEventPasses) {
    install();
    EXPECT_EQ(keyboard.send({.type = KeyEventType::TapDisabledByUserInput}), Verdict::Pass);
    EXPECT_TRUE(keyboard.taps().at(0)->isEnabled());
    EXPECT_EQ(settledTriggers(), 0);
}

/// Both keys, as the agent has them: the toggle's tap is the newer one.
class TwoHotkeys : public TranslateToggle {
protected:
    TwoHotkeys() {
        hotkey.onPressStart = [this] { ++starts; };
        hotkey.onPressEnd = [this] { ++ends; };
    }

    HotkeyManager hotkey{actor, keyboard, console};
    int starts = 0;
    int ends = 0;
};

TEST_F(TwoHotkeys, toggleStruckWhileTheHotkeyIsHeld_doesNotEndThePress) {
    hotkey.install(); // Control + Option + Space
    install();
    hold({VirtualKey::Control, VirtualKey::Option, VirtualKey::Space, VirtualKey::Command});
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 1);
    EXPECT_EQ(std::pair(starts, ends), std::pair(1, 0));
    keyboard.release(VirtualKey::Space);
    EXPECT_EQ(settledTriggers(), 0);
    EXPECT_EQ(std::pair(starts, ends), std::pair(1, 1));
}

TEST_F(TwoHotkeys, oneChordForBoth_isTheToggles) {
    hotkey.setBinding(chord);
    hotkey.install();
    install();
    holdModifiers();
    keyboard.tap(VirtualKey::T);
    EXPECT_EQ(settledTriggers(), 1);
    EXPECT_EQ(std::pair(starts, ends), std::pair(0, 0));
}

} // namespace
