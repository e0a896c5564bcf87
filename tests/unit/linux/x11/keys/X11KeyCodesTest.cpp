// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyCodes.h"

#include "platform/keyboard/EventTap.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <xcb/xproto.h>

using namespace talvera;

namespace {

TEST(X11KeyCodes, everyKeycode_comesBackFromItsVirtualKey) {
    int mapped = 0;
    for (std::size_t index = 0; index < xKeycodeCount; ++index) {
        const auto keycode = XKeycode(index);
        const auto key = X11KeyCodes::toVirtual(keycode);
        if (!key)
            continue;
        ++mapped;
        EXPECT_EQ(std::ranges::count(X11KeyCodes::fromVirtual(*key), keycode), 1) << index;
    }
    EXPECT_GE(mapped, 110);
}

TEST(X11KeyCodes, keycodes_areThoseOfTheKernelPlusEight) {
    EXPECT_EQ(X11KeyCodes::fromVirtual(VirtualKey::Space), std::vector{XKeycode{65}});
    EXPECT_EQ(X11KeyCodes::fromVirtual(VirtualKey::RightCommand),
              (std::vector{XKeycode{134}, XKeycode{105}}));
    EXPECT_EQ(X11KeyCodes::toVirtual(XKeycode{105}), VirtualKey::RightCommand);
    EXPECT_EQ(X11KeyCodes::toVirtual(XKeycode{37}), VirtualKey::Control);
}

TEST(X11KeyCodes, unknownKeys_mapToNothing) {
    for (const int key : {52, 62, 66, 127, 128, 200, 65535})
        EXPECT_TRUE(X11KeyCodes::fromVirtual(VirtualKey(key)).empty()) << key;
    for (const int keycode : {0, 7, 8, 93, 255})
        EXPECT_EQ(X11KeyCodes::toVirtual(XKeycode(keycode)), std::nullopt) << keycode;
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
