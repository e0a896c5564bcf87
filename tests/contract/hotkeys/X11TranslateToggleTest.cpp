// SPDX-License-Identifier: MIT
// The key that switches translation, beside the hotkey: real keyboards, a real application.
#include "HotkeyOnX11.h"
#include "KeyMap.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "linux/x11/server/X11Server.h"

#include <algorithm>
#include <chrono>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

const auto defaultToggle =
    HotkeyBinding::chord(KeyFlag::Control | KeyFlag::Option | KeyFlag::Command, VirtualKey::T);

class X11TranslateToggle : public HotkeyOnX11 {
protected:
    X11TranslateToggle() {
        toggle.onTrigger = [this] { calls.emplace_back("toggle"); };
    }

    /// Both keys, as the agent has them.
    void installBoth(const HotkeyBinding& binding = {}) {
        install(binding);
        installToggle();
    }
    void installToggle(const std::optional<HotkeyBinding>& binding = defaultToggle) {
        toggle.setBinding(binding);
        toggle.install();
        ASSERT_NE(toggle.eventTap(), nullptr);
    }

    /// How many presses and releases of the toggle's letter reach the application.
    struct Letters {
        std::ptrdiff_t presses = 0;
        std::ptrdiff_t releases = 0;

        bool operator==(const Letters&) const = default;
    };
    Letters takeLetters() {
        const auto keys = keyboard.window().takeKeys();
        return {std::ranges::count(keys, "+28"), std::ranges::count(keys, "-28")};
    }

    /// Struck as by fingers: what a key does is told before it goes up.
    Calls strike() {
        pressAll(toggleKeys);
        auto told = takeCalls();
        releaseAll({toggleKeys.rbegin(), toggleKeys.rend()});
        const auto afterwards = takeCalls();
        told.insert(told.end(), afterwards.begin(), afterwards.end());
        return told;
    }

    TranslateToggleHotkey toggle{keyboard.actor(), keyboard.taps(), console};
};

TEST_F(X11TranslateToggle, struck_triggersEachTimeAndTheApplicationGetsTheKeyUpAlone) {
    installToggle();
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(strike(), Calls{"toggle"});
        EXPECT_EQ(takeLetters(), (Letters{0, 1}));
    }
}

TEST_F(X11TranslateToggle, held_triggersOnceAndItsRepeatsReachTheApplication) {
    installToggle();
    pressAll(toggleKeys);
    EXPECT_EQ(takeCalls(), Calls{"toggle"}); // also asks anew what is waited for, which must not matter
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (std::ptrdiff_t repeats = 0; repeats < 4; repeats += takeLetters().presses)
        ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "no repeats";
    EXPECT_EQ(takeCalls(), Calls{});
    releaseAll({toggleKeys.rbegin(), toggleKeys.rend()});
    EXPECT_EQ(takeCalls(), Calls{});
    takeLetters();
    EXPECT_EQ(strike(), Calls{"toggle"});
    EXPECT_EQ(takeLetters(), (Letters{0, 1}));
}

TEST_F(X11TranslateToggle, tapFasterThanWeListen_triggersAndLeavesTheChordOurs) {
    installToggle();
    for (int i = 0; i < 20; ++i) {
        tapAll(toggleKeys);
        EXPECT_EQ(takeCalls(), Calls{"toggle"});
        EXPECT_EQ(takeLetters().presses, 0);
    }
}

TEST_F(X11TranslateToggle, struckAgainAtAnyMomentAfterItsRelease_triggersEachTime) {
    installToggle();
    for (int i = 0; i < 40; ++i) {
        pressAll(toggleKeys);
        EXPECT_EQ(takeCalls(), Calls{"toggle"}) << i;
        release(Key::t);
        std::this_thread::sleep_for(std::chrono::microseconds(50) * i); // around the time that the grabs take
        press(Key::t);
        EXPECT_EQ(takeCalls(), Calls{"toggle"}) << i;
        releaseAll({toggleKeys.rbegin(), toggleKeys.rend()});
        EXPECT_EQ(takeCalls(), Calls{}) << i;
    }
}

TEST_F(X11TranslateToggle, everyLockAndLayout_isTheSame) {
    installToggle();
    for (const std::uint8_t locks :
         {+XCB_MOD_MASK_LOCK, +XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2}) {
        lock(locks, 0);
        EXPECT_EQ(strike(), Calls{"toggle"}) << static_cast<int>(locks);
    }
    lock(0, 0);
    for (const auto* layout : {"de", "fr", "ru", "us"}) {
        const KeyMap map({QStringLiteral("-layout"), QString::fromLatin1(layout)});
        takeLetters();
        EXPECT_EQ(strike(), Calls{"toggle"}) << layout;
        EXPECT_EQ(takeLetters(), (Letters{0, 1})) << layout;
    }
}

TEST_F(X11TranslateToggle, furtherModifiers_doNotStopIt) {
    installToggle();
    press(Key::leftShift);
    EXPECT_EQ(strike(), Calls{"toggle"});
    EXPECT_EQ(takeLetters(), (Letters{0, 1}));
}

TEST_F(X11TranslateToggle, whileTheHotkeysChordIsHeld_triggersAndTheHotkeyStaysPressed) {
    installBoth();
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    EXPECT_EQ(takeCalls(), Calls{"start"});
    pressAll({Key::leftSuper, Key::t});
    EXPECT_EQ(takeCalls(), Calls{"toggle"});
    releaseAll({Key::t, Key::leftSuper});
    EXPECT_EQ(takeCalls(), Calls{});
    releaseAll({Key::space, Key::leftAlt, Key::leftControl});
    EXPECT_EQ(takeCalls(), Calls{"end"});
    const auto keys = keyboard.window().takeKeys();
    EXPECT_EQ(std::ranges::count(keys, "+65") + std::ranges::count(keys, "-65"), 0);
    EXPECT_EQ(strike(), Calls{"toggle"});
}

TEST_F(X11TranslateToggle, whileRightCtrlIsHeldAsTheHotkey_triggersAndTheHotkeyStaysPressed) {
    installBoth(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    press(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    auto told = strike();
    std::erase(told, "other");
    EXPECT_EQ(told, Calls{"toggle"});
    release(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{"end"});
}

TEST_F(X11TranslateToggle, hotkeyPressedWhileTheToggleIsHeld_startsAndEnds) {
    installBoth();
    pressAll(toggleKeys);
    EXPECT_EQ(takeCalls(), Calls{"toggle"});
    press(Key::space);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    release(Key::space);
    EXPECT_EQ(takeCalls(), Calls{"end"});
    releaseAll({toggleKeys.rbegin(), toggleKeys.rend()});
    EXPECT_EQ(takeCalls(), Calls{}); // the chord is ours again
    takeLetters();
    EXPECT_EQ(strike(), Calls{"toggle"});
    EXPECT_EQ(takeLetters(), (Letters{0, 1}));
}

TEST_F(X11TranslateToggle, chordThatTheHotkeyHasWithFewerModifiers_belongsToEach) {
    installBoth(HotkeyBinding::chord(KeyFlag::Control | KeyFlag::Option, VirtualKey::T));
    EXPECT_EQ(strike(), Calls{"toggle"});
    tapAll({Key::leftControl, Key::leftAlt, Key::t});
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    takeLetters();
    EXPECT_EQ(strike(), Calls{"toggle"});
    EXPECT_EQ(takeLetters(), (Letters{0, 1}));
}

TEST_F(X11TranslateToggle, chordOfAnotherProgram_isKnownAndOursOnceThatLetsGo) {
    const auto other = X11Server().connect();
    xcb_grab_key(other->get(), 0, other->root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4,
                 static_cast<xcb_keycode_t>(Key::t), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_TRUE(other->roundTrip());
    installToggle();
    EXPECT_EQ(toggle.watchResult().get(), WatchResult::ChordTaken);
    EXPECT_FALSE(toggle.acts());
    EXPECT_EQ(strike(), Calls{});
    EXPECT_EQ(takeLetters(), (Letters{0, 0})); // the other program has it

    xcb_ungrab_key(other->get(), static_cast<xcb_keycode_t>(Key::t), other->root(), XCB_MOD_MASK_ANY);
    ASSERT_TRUE(other->roundTrip());
    strike(); // shows that the user wants it
    EXPECT_EQ(strike(), Calls{"toggle"});
    EXPECT_TRUE(toggle.acts());
}

TEST_F(X11TranslateToggle, bindingChangedWhileHeld_actsAndTheFormerLetterIsTheApplications) {
    installToggle();
    pressAll(toggleKeys);
    EXPECT_EQ(takeCalls(), Calls{"toggle"});
    toggle.setBinding(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K));
    releaseAll({toggleKeys.rbegin(), toggleKeys.rend()});
    takeLetters();
    EXPECT_EQ(strike(), Calls{});
    EXPECT_EQ(takeLetters(), (Letters{1, 1}));
    tapAll({Key::leftControl, Key::k});
    EXPECT_EQ(takeCalls(), Calls{"toggle"});
}

TEST_F(X11TranslateToggle, withoutABinding_everythingIsTheApplications) {
    installToggle(std::nullopt);
    EXPECT_EQ(strike(), Calls{});
    EXPECT_EQ(takeLetters(), (Letters{1, 1}));
    toggle.setBinding(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightOption));
    tap(Key::rightAlt);
    EXPECT_EQ(takeCalls(), Calls{});
}

TEST_F(X11TranslateToggle, bothChordsWithEachOther_eachActsWhicheverIsFirst) {
    installBoth();
    const std::vector modifiers{Key::leftControl, Key::leftAlt, Key::leftSuper};
    pressAll(modifiers);
    pressAll({Key::space, Key::t});
    EXPECT_EQ(takeCalls(), (Calls{"start", "toggle"}));
    releaseAll({Key::space, Key::t});
    EXPECT_EQ(takeCalls(), Calls{"end"});
    pressAll({Key::t, Key::space});
    EXPECT_EQ(takeCalls(), (Calls{"toggle", "start"}));
    releaseAll({Key::t, Key::space});
    EXPECT_EQ(takeCalls(), Calls{"end"});
    releaseAll(modifiers);
    EXPECT_EQ(strike(), Calls{"toggle"}); // and both are ours as before
    tapChord();
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(X11TranslateToggle, bothOnTwoKeyboards_areTold) {
    installBoth();
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        press(key, 0);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    for (const auto key : toggleKeys)
        press(key, 1);
    EXPECT_EQ(takeCalls(), Calls{"toggle"});
    for (const auto key : toggleKeys)
        release(key, 1);
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        release(key, 0);
    EXPECT_EQ(takeCalls(), Calls{"end"});
}

TEST_F(X11TranslateToggle, postedByAProgram_triggersNothing) {
    installToggle();
    for (const auto key : toggleKeys)
        post(XCB_KEY_PRESS, key);
    for (auto key = toggleKeys.rbegin(); key != toggleKeys.rend(); ++key)
        post(XCB_KEY_RELEASE, *key);
    EXPECT_EQ(takeCalls(), Calls{});
    EXPECT_EQ(strike(), Calls{"toggle"});
}

} // namespace
