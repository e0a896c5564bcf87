// SPDX-License-Identifier: MIT
// The hotkey as its user meets it: real keyboards, a real application.
#include "HotkeyOnX11.h"
#include "KeyMap.h"
#include "linux/x11/keys/X11ChordGrabs.h"

#include <algorithm>
#include <chrono>
#include <thread>

using namespace talvera;
using namespace talvera::test;
using Special = HotkeyBinding::SpecialKey;

namespace {

class X11Hotkey : public HotkeyOnX11 {
protected:
    void postChord() {
        for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
            post(XCB_KEY_PRESS, key);
        for (const auto key : {Key::space, Key::leftAlt, Key::leftControl})
            post(XCB_KEY_RELEASE, key);
    }

    /// The server tells events apart by their milliseconds, which is enough for hands.
    static void awaitNextMillisecond() {
        const auto now = [] {
            return std::chrono::floor<std::chrono::milliseconds>(std::chrono::steady_clock::now());
        };
        for (const auto start = now(); now() == start;)
            std::this_thread::yield();
    }

    /// A tap of the chord starts and ends a press, and the application sees the modifiers alone.
    void expectChordIsOurs(const std::string& when) {
        keyboard.window().takeKeys();
        tapChord();
        EXPECT_EQ(takeCalls(), (Calls{"start", "end"})) << when;
        EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+37", "+64", "-64", "-37"})) << when;
    }
};

TEST_F(X11Hotkey, chord_isOursWithEveryLock) {
    install();
    for (const std::uint8_t locks :
         {0, +XCB_MOD_MASK_LOCK, +XCB_MOD_MASK_2, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2, +XCB_MOD_MASK_3,
          +XCB_MOD_MASK_5, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2 | XCB_MOD_MASK_3 | XCB_MOD_MASK_5}) {
        lock(locks, 0);
        expectChordIsOurs("locks " + std::to_string(locks));
    }
}

TEST_F(X11Hotkey, chord_isOursWithLocksSwitchedOnTheKeyboard) {
    install();
    for (const auto key : {Key::capsLock, Key::numLock, Key::scrollLock}) {
        tap(key);
        expectChordIsOurs("lock key " + std::to_string(indexOf(key)));
    }
}

TEST_F(X11Hotkey, chord_isOursWithFurtherModifiers) {
    install();
    for (const auto& further : std::vector<std::vector<XKeycode>>{
             {Key::leftShift}, {Key::leftSuper}, {Key::leftShift, Key::rightSuper}, {Key::rightAlt}}) {
        for (const auto key : further)
            press(key);
        pressAll({Key::leftControl, Key::leftAlt, Key::space});
        EXPECT_EQ(takeCalls(), Calls{"start"});
        releaseAll({Key::space, Key::leftAlt, Key::leftControl});
        for (const auto key : further)
            release(key);
        EXPECT_EQ(takeCalls(), Calls{"end"});
        for (const auto& key : keyboard.window().takeKeys())
            EXPECT_NE(key.substr(1), "65");
    }
}

TEST_F(X11Hotkey, chord_isOursOnEveryLayout) {
    install();
    for (const auto* layout : {"de", "ru", "fr", "us(dvorak)"}) {
        const KeyMap map({QStringLiteral("-layout"), QString::fromLatin1(layout)});
        expectChordIsOurs(layout);
    }
    expectChordIsOurs("us again");
}

TEST_F(X11Hotkey, chord_isOursInTheSecondGroup) {
    const KeyMap map({QStringLiteral("-layout"), QStringLiteral("us,ru")});
    install();
    lock(0, 1);
    expectChordIsOurs("ru locked");
    lock(0, 0);
    expectChordIsOurs("us locked");
}

TEST_F(X11Hotkey, chordOnALetter_isThePhysicalKeyOnEveryLayout) {
    install(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::Y)); // where us has Y, and de has Z
    const KeyMap map({QStringLiteral("-layout"), QStringLiteral("de")});
    pressAll({Key::leftControl, Key::y});
    releaseAll({Key::y, Key::leftControl});
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+37", "-37"}));
}

TEST_F(X11Hotkey, capsLockMadeControl_countsAsControl) {
    const KeyMap map({QStringLiteral("-option"), QStringLiteral("ctrl:nocaps")});
    install();
    pressAll({Key::capsLock, Key::leftAlt, Key::space});
    releaseAll({Key::space, Key::leftAlt, Key::capsLock});
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(X11Hotkey, chordSpreadOverTwoKeyboards_isOurs) {
    install();
    press(Key::leftControl, 0);
    press(Key::leftAlt, 1);
    press(Key::space, 1);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    release(Key::space, 1);
    EXPECT_EQ(takeCalls(), Calls{"end"});
}

TEST_F(X11Hotkey, keyOnTwoKeyboards_isHeldUntilBothLetGo) {
    install();
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    press(Key::space, 1);
    release(Key::space, 0);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    release(Key::space, 1);
    EXPECT_EQ(takeCalls(), Calls{"end"});
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+37", "+64"}));
}

TEST_F(X11Hotkey, repeats_areSwallowedWithTheirKey) {
    X11ChordGrabs grabs{X11Server()};
    ASSERT_EQ(grabs.hold({{0xC0000, VirtualKey::Space}}), std::vector{WatchResult::Watching});
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    for (int keyDowns = 0; keyDowns < 4;) {
        if (grabs.nextKeyDown())
            ++keyDowns;
        else
            grabs.connection().waitForEvent(std::chrono::steady_clock::now() + std::chrono::milliseconds(10));
    }
    releaseAll({Key::space, Key::leftAlt, Key::leftControl});
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+37", "+64", "-64", "-37"}));
}

TEST_F(X11Hotkey, bindingChangedDuringAPress_endsItAndTheKeyUpReachesTheApplication) {
    install();
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    EXPECT_EQ(takeCalls(), Calls{"start"});
    keyboard.window().takeKeys();
    hotkey.setBinding(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::A));
    EXPECT_EQ(takeCalls(), Calls{"end"});
    release(Key::space);
    EXPECT_EQ(takeCalls(), Calls{});
    EXPECT_EQ(keyboard.window().takeKeys(), Keys{"-65"});
    tap(Key::a);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
    EXPECT_EQ(keyboard.window().takeKeys(), Keys{});
}

TEST_F(X11Hotkey, keyHeldWhileItsBindingGoes_countsAsLetGo) {
    install();
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    EXPECT_EQ(takeCalls(), Calls{"start"});
    hotkey.setBinding(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::A));
    EXPECT_EQ(takeCalls(), Calls{"end"});
    releaseAll({Key::space, Key::leftAlt, Key::leftControl});
    hotkey.setBinding(HotkeyBinding());
    for (const auto key : {Key::leftControl, Key::leftAlt, Key::space})
        press(key, 1);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    release(Key::space, 1);
    EXPECT_EQ(takeCalls(), Calls{"end"});
}

TEST_F(X11Hotkey, specialKeyBoundDuringAPress_isHeardAfterIt) {
    install();
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    EXPECT_EQ(takeCalls(), Calls{"start"});
    hotkey.setBinding(HotkeyBinding::holdSpecial(Special::RightOption));
    releaseAll({Key::space, Key::leftAlt, Key::leftControl});
    EXPECT_EQ(takeCalls(), Calls{"end"});
    tap(Key::rightAlt);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(X11Hotkey, rightCommand_isRightSuperAndRightControl) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    for (const auto key : {Key::rightSuper, Key::rightControl}) {
        const auto number = std::to_string(indexOf(key));
        press(key);
        EXPECT_EQ(takeCalls(), Calls{"start"}) << number;
        release(key);
        EXPECT_EQ(takeCalls(), Calls{"end"}) << number;
        EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+" + number, "-" + number}));
    }
}

TEST_F(X11Hotkey, leftTwins_areNotTheSpecialKeys) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    tap(Key::leftSuper);
    tap(Key::leftControl);
    hotkey.setBinding(HotkeyBinding::holdSpecial(Special::RightOption));
    tap(Key::leftAlt);
    EXPECT_EQ(takeCalls(), Calls{});
}

TEST_F(X11Hotkey, leftControlHeld_doesNotHoldRightControlsPress) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    press(Key::leftControl);
    press(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    release(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{"end"});
}

TEST_F(X11Hotkey, leftSuperHeld_holdsRightCommandsPress) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    press(Key::leftSuper);
    press(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    releaseAll({Key::rightControl, Key::leftSuper});
    EXPECT_EQ(takeCalls(), Calls{});
    tap(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{"end"});
}

TEST_F(X11Hotkey, rightControl_inAChordIsControl) {
    install();
    pressAll({Key::rightControl, Key::leftAlt, Key::space});
    releaseAll({Key::space, Key::leftAlt, Key::rightControl});
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(X11Hotkey, rightAlt_isRightOptionAlsoAsAltGr) {
    install(HotkeyBinding::holdSpecial(Special::RightOption));
    for (const auto* layout : {"us", "de"}) {
        const KeyMap map({QStringLiteral("-layout"), QString::fromLatin1(layout)});
        tap(Key::rightAlt);
        EXPECT_EQ(takeCalls(), (Calls{"start", "end"})) << layout;
        EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+108", "-108"})) << layout;
    }
}

TEST_F(X11Hotkey, specialKeyHeld_letsOtherKeysThrough) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    press(Key::rightControl);
    tap(Key::a);
    release(Key::rightControl);
    EXPECT_EQ(takeCalls(), (Calls{"start", "other", "end"}));
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+105", "+38", "-38", "-105"}));
}

TEST_F(X11Hotkey, fn_isTheWakeUpKey) {
    install(HotkeyBinding::holdSpecial(Special::Fn));
    tap(Key::wakeUp);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(X11Hotkey, capsLock_startsWithTheLockAndEndsWithIt) {
    install(HotkeyBinding::holdSpecial(Special::CapsLock));
    tap(Key::capsLock);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    press(Key::capsLock);
    EXPECT_EQ(takeCalls(), Calls{});
    release(Key::capsLock);
    EXPECT_EQ(takeCalls(), Calls{"end"});
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+66", "-66", "+66", "-66"}));
}

TEST_F(X11Hotkey, capsLockThatTheLayoutMadeAnotherKey_isTold) {
    for (const auto* option :
         {"ctrl:nocaps", "caps:escape", "caps:none", "caps:backspace", "ctrl:swapcaps"}) {
        const KeyMap map({QStringLiteral("-option"), QString::fromLatin1(option)});
        hotkey.setBinding(HotkeyBinding());
        install(HotkeyBinding::holdSpecial(Special::CapsLock));
        takeCalls();
        EXPECT_EQ(std::exchange(refused, {}), std::vector{WatchResult::Unavailable}) << option;
    }
    hotkey.setBinding(HotkeyBinding());
    hotkey.setBinding(HotkeyBinding::holdSpecial(Special::CapsLock));
    takeCalls();
    EXPECT_TRUE(refused.empty());
}

TEST_F(X11Hotkey, otherKeyStruckWhileASpecialKeyIsHeld_isTold) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    press(Key::rightControl);
    tap(Key::left);
    tap(Key::left);
    release(Key::rightControl);
    EXPECT_EQ(takeCalls(), (Calls{"start", "other", "end"}));
}

TEST_F(X11Hotkey, postedChord_startsNothing) {
    install();
    postChord();
    EXPECT_EQ(takeCalls(), Calls{});
    expectChordIsOurs("after that");
}

TEST_F(X11Hotkey, postedSpecialKey_startsNothing) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    post(XCB_KEY_PRESS, Key::rightControl);
    post(XCB_KEY_RELEASE, Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{});
}

TEST_F(X11Hotkey, postedKeyUp_doesNotEndAPress) {
    install();
    pressAll({Key::leftControl, Key::leftAlt, Key::space});
    EXPECT_EQ(takeCalls(), Calls{"start"});
    post(XCB_KEY_RELEASE, Key::space);
    post(XCB_KEY_PRESS, Key::space);
    post(XCB_KEY_RELEASE, Key::space);
    EXPECT_EQ(takeCalls(), Calls{});
    release(Key::space);
    EXPECT_EQ(takeCalls(), Calls{"end"});
}

TEST_F(X11Hotkey, postedKeyUp_doesNotEndASpecialPress) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    press(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{"start"});
    post(XCB_KEY_RELEASE, Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{});
    release(Key::rightControl);
    EXPECT_EQ(takeCalls(), Calls{"end"});
}

/// A screen locker, or a menu.
class Locker {
public:
    Locker() {
        const auto grab = m_connection->reply<xcb_grab_keyboard_reply_t>(
            xcb_grab_keyboard(m_connection->get(), 0, m_connection->root(), XCB_CURRENT_TIME,
                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        EXPECT_TRUE(grab && grab->status == XCB_GRAB_STATUS_SUCCESS);
    }
    Locker(const Locker&) = delete;
    Locker& operator=(const Locker&) = delete;
    ~Locker() {
        xcb_ungrab_keyboard(m_connection->get(), XCB_CURRENT_TIME);
        m_connection->roundTrip();
    }

private:
    std::unique_ptr<X11Connection> m_connection = X11Server().connect();
};

TEST_F(X11Hotkey, keyboardOfAnotherProgram_keepsTheChord) {
    install();
    {
        const Locker locker;
        tapChord();
        EXPECT_EQ(takeCalls(), Calls{});
    }
    expectChordIsOurs("after that");
}

TEST_F(X11Hotkey, keyboardOfAnotherProgram_doesNotKeepSpecialKeys) {
    install(HotkeyBinding::holdSpecial(Special::RightCommand));
    const Locker locker;
    tap(Key::rightControl);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end"}));
}

TEST_F(X11Hotkey, chordsThatWereOnlyHalfOurs_makeNoWholeOne) {
    install();
    postChord();
    {
        const Locker locker;
        awaitNextMillisecond();
        tapChord();
    }
    awaitNextMillisecond();
    postChord();
    EXPECT_EQ(takeCalls(), Calls{});
}

TEST_F(X11Hotkey, chordOfAnotherProgram_isToldAndOursOnceThatLetsGo) {
    const auto other = X11Server().connect();
    xcb_grab_key(other->get(), 0, other->root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1,
                 static_cast<xcb_keycode_t>(Key::space), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_TRUE(other->roundTrip());
    install();
    tapChord();
    EXPECT_EQ(takeCalls(), Calls{});
    EXPECT_EQ(refused, std::vector{WatchResult::ChordTaken});
    EXPECT_EQ(console.logged(), QStringList{"HotkeyManager: another program holds the bound shortcut."});

    xcb_ungrab_key(other->get(), static_cast<xcb_keycode_t>(Key::space), other->root(), XCB_MOD_MASK_ANY);
    ASSERT_TRUE(other->roundTrip());
    tapChord(); // shows that the user wants it
    takeCalls();
    expectChordIsOurs("the next time");
    EXPECT_EQ(refused.size(), 1U);
}

TEST_F(X11Hotkey, chordThatAnotherProgramLetsGo_isOursOnceTheUserAsksForIt) {
    const auto other = X11Server().connect();
    xcb_grab_key(other->get(), 0, other->root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1,
                 static_cast<xcb_keycode_t>(Key::space), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_TRUE(other->roundTrip());
    install();
    xcb_ungrab_key(other->get(), static_cast<xcb_keycode_t>(Key::space), other->root(), XCB_MOD_MASK_ANY);
    ASSERT_TRUE(other->roundTrip());
    // Nothing but the key asks anew here: settling would, too.
    const auto spaces = [this] {
        keyboard.window().takeKeys();
        tapChord();
        return std::ranges::count(keyboard.window().takeKeys(), "+" + std::to_string(indexOf(Key::space)));
    };
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (spaces() > 0)
        ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "still the application's";
}

TEST_F(X11Hotkey, chordThatAnotherProgramHoldsWithALock_isTold) {
    const auto other = X11Server().connect();
    xcb_grab_key(other->get(), 0, other->root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_2,
                 static_cast<xcb_keycode_t>(Key::space), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_TRUE(other->roundTrip());
    install();
    takeCalls();
    EXPECT_EQ(refused, std::vector{WatchResult::ChordTaken});
    expectChordIsOurs("without that lock");
}

TEST_F(X11Hotkey, furtherModifiersOfAnotherProgram_stayWithIt) {
    const auto other = X11Server().connect();
    xcb_grab_key(other->get(), 0, other->root(), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_SHIFT,
                 static_cast<xcb_keycode_t>(Key::space), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_TRUE(other->roundTrip());
    install();
    EXPECT_TRUE(refused.empty());
    press(Key::leftShift);
    tapChord();
    release(Key::leftShift);
    EXPECT_EQ(takeCalls(), Calls{});
    expectChordIsOurs("without Shift");
}

TEST_F(X11Hotkey, keyThatNoKeyboardHas_isToldAndDoesNoHarm) {
    install(HotkeyBinding::chord(0xC0000, VirtualKey(4000)));
    EXPECT_EQ(takeCalls(), Calls{});
    EXPECT_EQ(refused, std::vector{WatchResult::Unavailable});
    hotkey.setBinding(HotkeyBinding());
    expectChordIsOurs("after that");
}

TEST_F(X11Hotkey, modifiersThatNoKeyboardHas_leaveTheKeyToTheApplication) {
    install(HotkeyBinding::chord(0xC0000 | 0x20, VirtualKey::Space));
    tapChord();
    EXPECT_EQ(takeCalls(), Calls{});
    EXPECT_EQ(refused, std::vector{WatchResult::Unavailable});
    EXPECT_EQ(keyboard.window().takeKeys().size(), 6U);
}

TEST_F(X11Hotkey, chordWithoutModifiers_isOurs) {
    install(HotkeyBinding::chord(0, VirtualKey::F5));
    tap(Key::f5);
    press(Key::leftShift);
    tap(Key::f5);
    release(Key::leftShift);
    EXPECT_EQ(takeCalls(), (Calls{"start", "end", "start", "end"}));
    EXPECT_EQ(keyboard.window().takeKeys(), (Keys{"+50", "-50"}));
}

} // namespace
