// SPDX-License-Identifier: MIT
#pragma once

#include "RealKeyboard.h"
#include "RecordingConsole.h"
#include "hotkeys/HotkeyManager.h"
#include "keys.h"
#include "linux/x11/server/XcbXkb.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include <xcb/xtest.h>

namespace talvera::test {

/// A hotkey on real keyboards, with an application that has the focus.
class HotkeyOnX11 : public testing::Test {
protected:
    using Calls = std::vector<std::string>;
    using Keys = std::vector<std::string>;

    HotkeyOnX11() {
        hotkey.onPressStart = [this] { calls.emplace_back("start"); };
        hotkey.onPressEnd = [this] { calls.emplace_back("end"); };
        hotkey.onOtherKeyWhileHeld = [this] { calls.emplace_back("other"); };
        hotkey.onBindingRefused() = [this](WatchResult result) { refused.push_back(result); };
    }

    void TearDown() override {
        for (const auto& [key, device] : std::set(held))
            release(key, device);
        lock(0, 0);
    }

    void install(const HotkeyBinding& binding = {}) {
        hotkey.setBinding(binding);
        hotkey.install();
        ASSERT_NE(hotkey.eventTap(), nullptr);
    }

    void press(XKeycode key, int device = 0) {
        held.emplace(key, device);
        keyboard.keys.press(key, device);
    }
    void release(XKeycode key, int device = 0) {
        held.erase({key, device});
        keyboard.keys.release(key, device);
    }
    void tap(XKeycode key, int device = 0) {
        press(key, device);
        release(key, device);
    }
    void pressAll(const std::vector<XKeycode>& keys) {
        for (const auto key : keys)
            press(key);
    }
    void releaseAll(const std::vector<XKeycode>& keys) {
        for (const auto key : keys)
            release(key);
    }
    /// Pressed one after the other, and let go in the opposite order.
    void tapAll(const std::vector<XKeycode>& keys) {
        pressAll(keys);
        releaseAll({keys.rbegin(), keys.rend()});
    }
    /// Ctrl+Alt+Space, pressed and let go.
    void tapChord() { tapAll({Key::leftControl, Key::leftAlt, Key::space}); }

    /// A key event as programs post them.
    void post(std::uint8_t type, XKeycode key) {
        auto& connection = keyboard.window().connection();
        xcb_test_fake_input(connection.get(), type, static_cast<xcb_keycode_t>(key), XCB_CURRENT_TIME,
                            XCB_NONE, 0, 0, 0);
        ASSERT_TRUE(connection.roundTrip());
    }

    /// Locks these modifiers and this group, and no others.
    void lock(std::uint8_t modifiers, std::uint8_t group) {
        auto& connection = keyboard.window().connection();
        connection.reply<xcb_xkb_use_extension_reply_t>(
            xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION));
        xcb_xkb_latch_lock_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0xFF, modifiers, 1, group, 0, 0,
                                 0);
        ASSERT_TRUE(connection.roundTrip());
    }

    /// The callbacks since the last call.
    Calls takeCalls() {
        keyboard.settle();
        keyboard.settle(); // what has been told calls back in a later turn
        return std::exchange(calls, {});
    }

    /// Of the chord that switches translation by default.
    const std::vector<XKeycode> toggleKeys{Key::leftControl, Key::leftAlt, Key::leftSuper, Key::t};

    RealKeyboard keyboard;
    RecordingConsole console;
    HotkeyManager hotkey{keyboard.actor(), keyboard.taps(), console};
    Calls calls;
    std::vector<WatchResult> refused;
    std::set<std::pair<XKeycode, int>> held; // with the device
};

} // namespace talvera::test
