// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyCodes.h"

#include "platform/keyboard/EventTap.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <xcb/xproto.h>

using namespace talvera;

namespace {

using Keycodes = std::vector<std::uint8_t>;

TEST(X11KeyCodes, everyKeycode_comesBackFromItsVirtualKey) {
    int mapped = 0;
    for (int keycode = 0; keycode < 256; ++keycode) {
        const auto key = X11KeyCodes::toVirtual(static_cast<std::uint8_t>(keycode));
        if (!key)
            continue;
        ++mapped;
        const auto keycodes = X11KeyCodes::fromVirtual(*key);
        EXPECT_EQ(std::ranges::count(keycodes, keycode), 1) << keycode;
    }
    EXPECT_GE(mapped, 110);
}

TEST(X11KeyCodes, keysOfBindings_areWhereTheyBelong) {
    EXPECT_EQ(X11KeyCodes::fromVirtual(49), Keycodes{65});   // Space
    EXPECT_EQ(X11KeyCodes::fromVirtual(36), Keycodes{36});   // Return
    EXPECT_EQ(X11KeyCodes::fromVirtual(53), Keycodes{9});    // Escape
    EXPECT_EQ(X11KeyCodes::fromVirtual(17), Keycodes{28});   // T
    EXPECT_EQ(X11KeyCodes::fromVirtual(123), Keycodes{113}); // Left
    EXPECT_EQ(X11KeyCodes::fromVirtual(61), Keycodes{108});  // Right Alt
    EXPECT_EQ(X11KeyCodes::fromVirtual(57), Keycodes{66});   // Caps Lock
    EXPECT_EQ(X11KeyCodes::fromVirtual(63), Keycodes{151});  // Fn
}

TEST(X11KeyCodes, rightCommand_isRightSuperAndRightControl) {
    EXPECT_EQ(X11KeyCodes::fromVirtual(54), (Keycodes{134, 105}));
    EXPECT_EQ(X11KeyCodes::toVirtual(134), 54);
    EXPECT_EQ(X11KeyCodes::toVirtual(105), 54);
    EXPECT_EQ(X11KeyCodes::toVirtual(133), 55);
    EXPECT_EQ(X11KeyCodes::toVirtual(37), 59);
}

TEST(X11KeyCodes, unknownKeys_mapToNothing) {
    for (const std::uint16_t key : {52, 62, 66, 127, 128, 200, 65535})
        EXPECT_TRUE(X11KeyCodes::fromVirtual(key).empty()) << key;
    for (const std::uint8_t keycode : {0, 8, 93, 255})
        EXPECT_EQ(X11KeyCodes::toVirtual(keycode), std::nullopt) << int(keycode);
}

TEST(X11KeyCodes, flagsAndModifiers_standForEachOther) {
    for (const auto flag :
         {KeyFlag::CapsLock, KeyFlag::Shift, KeyFlag::Control, KeyFlag::Option, KeyFlag::Command}) {
        const auto modifiers = X11KeyCodes::modifiersFromFlags(flag);
        ASSERT_TRUE(modifiers);
        EXPECT_EQ(X11KeyCodes::flagsFromState(*modifiers), flag);
    }
    EXPECT_EQ(X11KeyCodes::modifiersFromFlags(0), 0);
    EXPECT_EQ(X11KeyCodes::modifiersFromFlags(KeyFlag::Control | KeyFlag::Option),
              XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
}

TEST(X11KeyCodes, flagsThatXHasNot_haveNoModifiers) {
    EXPECT_EQ(X11KeyCodes::modifiersFromFlags(KeyFlag::Fn), std::nullopt);
    EXPECT_EQ(X11KeyCodes::modifiersFromFlags(KeyFlag::Control | 0x100), std::nullopt);
    EXPECT_EQ(X11KeyCodes::modifiersFromFlags(UINT64_MAX), std::nullopt);
}

TEST(X11KeyCodes, stateOfLocksAndGroups_addsNothing) {
    EXPECT_EQ(X11KeyCodes::flagsFromState(XCB_MOD_MASK_2 | XCB_MOD_MASK_3 | XCB_MOD_MASK_5 | 0x2000), 0U);
}

} // namespace
