// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyboardLayout.h"

#include "HotkeyOnX11.h"
#include "KeyMap.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class X11KeyboardLayoutTest : public HotkeyOnX11 {
protected:
    static KeyMap layoutOf(const char* name) {
        return KeyMap({QStringLiteral("-layout"), QString::fromLatin1(name)});
    }

    X11KeyboardLayout layout{X11Server()};
};

TEST_F(X11KeyboardLayoutTest, letters_followTheLayout) {
    EXPECT_EQ(layout.character(VirtualKey::A), "a");
    EXPECT_EQ(layout.character(VirtualKey::Y), "y");
    {
        const auto map = layoutOf("de");
        EXPECT_EQ(layout.character(VirtualKey::Y), "z");
        EXPECT_EQ(layout.character(VirtualKey::Minus), "ß");
        EXPECT_EQ(layout.character(VirtualKey::Quote), "ä");
    }
    {
        const auto map = layoutOf("fr");
        EXPECT_EQ(layout.character(VirtualKey::A), "q");
    }
    {
        const auto map = layoutOf("us(dvorak)");
        EXPECT_EQ(layout.character(VirtualKey::S), "o");
    }
    EXPECT_EQ(layout.character(VirtualKey::A), "a");
}

TEST_F(X11KeyboardLayoutTest, group_isTheOneInUse) {
    const auto map = layoutOf("us,ru");
    EXPECT_EQ(layout.character(VirtualKey::A), "a");
    lock(0, 1);
    EXPECT_EQ(layout.character(VirtualKey::A), "ф");
}

TEST_F(X11KeyboardLayoutTest, deadKey_hasNoCharacter) {
    const auto map = layoutOf("de");
    EXPECT_EQ(layout.character(VirtualKey::Equal), std::nullopt);
}

TEST_F(X11KeyboardLayoutTest, capsLock_changesNothing) {
    lock(XCB_MOD_MASK_LOCK, 0);
    EXPECT_EQ(layout.character(VirtualKey::A), "a");
}

TEST_F(X11KeyboardLayoutTest, keypad_hasItsDigits) {
    EXPECT_EQ(layout.character(VirtualKey::Keypad0), "0");
    lock(XCB_MOD_MASK_2, 0);
    EXPECT_EQ(layout.character(VirtualKey::Keypad0), "0");
}

TEST_F(X11KeyboardLayoutTest, keysWithoutText_haveNoCharacter) {
    for (const int key : {36, 48, 51, 53, 54, 105, 122, 123, 200, 65535})
        EXPECT_EQ(layout.character(VirtualKey(key)), std::nullopt) << key;
}

TEST_F(X11KeyboardLayoutTest, noServer_hasNoCharacters) {
    X11KeyboardLayout nowhere{X11Server("unix:/nowhere")};
    EXPECT_EQ(nowhere.character(VirtualKey::A), std::nullopt);
}

TEST_F(X11KeyboardLayoutTest, serverThatDoesNotAnswer_isNotWaitedForForEver) {
    const auto other = X11Server().connect();
    xcb_grab_server(other->get());
    ASSERT_TRUE(other->roundTrip());
    EXPECT_EQ(layout.character(VirtualKey::A), std::nullopt);
    xcb_ungrab_server(other->get());
    ASSERT_TRUE(other->roundTrip());
    EXPECT_EQ(layout.character(VirtualKey::A), "a");
}

TEST_F(X11KeyboardLayoutTest, bindings_readAsTheKeyboardWrites) {
    const auto map = layoutOf("de");
    EXPECT_EQ(HotkeyBinding::chord(KeyFlag::Command, VirtualKey::Y).displayString(layout), "⌘Z");
    EXPECT_EQ(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::Equal).displayString(layout), "⌃Key 24");
}

} // namespace
