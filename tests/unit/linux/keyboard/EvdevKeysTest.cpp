// SPDX-License-Identifier: MIT
#include "linux/keyboard/EvdevKeys.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <linux/input-event-codes.h>

using namespace talvera;

namespace {

std::vector<EvdevCode> codes(std::initializer_list<int> numbers) {
    std::vector<EvdevCode> codes;
    for (const int number : numbers)
        codes.push_back(EvdevCode(number));
    return codes;
}

TEST(EvdevKeys, everyCode_comesBackFromItsVirtualKey) {
    int mapped = 0;
    for (int number = 0; number <= KEY_MAX; ++number) {
        const auto code = EvdevCode(number);
        const auto key = EvdevKeys::toVirtual(code);
        if (!key)
            continue;
        ++mapped;
        EXPECT_EQ(std::ranges::count(EvdevKeys::fromVirtual(*key), code), 1) << number;
    }
    EXPECT_GE(mapped, 110);
}

TEST(EvdevKeys, numbersOfStoredBindings_areTheKeysThatTheyMean) {
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(49)), codes({KEY_SPACE}));
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(36)), codes({KEY_ENTER}));
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(53)), codes({KEY_ESC}));
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(17)), codes({KEY_T}));
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(123)), codes({KEY_LEFT}));
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(61)), codes({KEY_RIGHTALT}));
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(57)), codes({KEY_CAPSLOCK}));
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(63)), codes({KEY_WAKEUP}));
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(114)), codes({KEY_INSERT}));
}

TEST(EvdevKeys, rightCommand_isRightSuperAndRightControl) {
    EXPECT_EQ(EvdevKeys::fromVirtual(VirtualKey(54)), codes({KEY_RIGHTMETA, KEY_RIGHTCTRL}));
    EXPECT_EQ(EvdevKeys::toVirtual(EvdevCode(KEY_RIGHTMETA)), VirtualKey::RightCommand);
    EXPECT_EQ(EvdevKeys::toVirtual(EvdevCode(KEY_RIGHTCTRL)), VirtualKey::RightCommand);
    EXPECT_EQ(EvdevKeys::toVirtual(EvdevCode(KEY_LEFTMETA)), VirtualKey::Command);
    EXPECT_EQ(EvdevKeys::toVirtual(EvdevCode(KEY_LEFTCTRL)), VirtualKey::Control);
}

TEST(EvdevKeys, unknownKeys_mapToNothing) {
    for (const int key : {52, 62, 66, 127, 128, 200, 65535})
        EXPECT_TRUE(EvdevKeys::fromVirtual(VirtualKey(key)).empty()) << key;
    for (const int code : {KEY_RESERVED, KEY_ZENKAKUHANKAKU, KEY_FN, KEY_MAX})
        EXPECT_EQ(EvdevKeys::toVirtual(EvdevCode(code)), std::nullopt) << code;
}

} // namespace
