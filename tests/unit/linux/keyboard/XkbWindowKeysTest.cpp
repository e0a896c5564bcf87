// SPDX-License-Identifier: MIT
#include "linux/keyboard/XkbWindowKeys.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace talvera;

namespace {

constexpr std::uint32_t shift = 1;
constexpr std::uint32_t lock = 2;
constexpr std::uint32_t control = 4;
constexpr std::uint32_t mod1 = 8;
constexpr std::uint32_t mod2 = 16;
constexpr std::uint32_t mod4 = 64;
constexpr std::uint32_t mod5 = 128;

/// As "type key flags", or "nothing".
std::string read(std::uint32_t evdevCode, std::uint32_t modifiers = 0, std::uint32_t symbol = 0) {
    const auto event =
        XkbWindowKeys().read({.scanCode = evdevCode + 8, .symbol = symbol, .modifiers = modifiers});
    if (!event)
        return "nothing";
    std::ostringstream text;
    text << (event->type == KeyEventType::KeyDown ? "down " : "flags ") << static_cast<int>(event->keyCode)
         << ' ' << std::hex << event->flags;
    return text.str();
}

TEST(XkbWindowKeys, keyWithModifiers_isAKeyDownWithWhatIsHeld) {
    EXPECT_EQ(read(KEY_A), "down 0 0");
    EXPECT_EQ(read(KEY_SPACE, control | mod1), "down 49 c0000");
    EXPECT_EQ(read(KEY_T, shift | control | mod1 | mod4), "down 17 1e0000");
    EXPECT_EQ(read(KEY_ESC, lock), "down 53 10000");
}

TEST(XkbWindowKeys, numLockAndAltGr_areNoModifiersOfAChord) {
    EXPECT_EQ(read(KEY_Q, mod2 | mod5), "down 12 0");
}

TEST(XkbWindowKeys, modifierKey_showsItsOwnFlagByItsPlace) {
    EXPECT_EQ(read(KEY_RIGHTCTRL), "flags 54 100000");
    EXPECT_EQ(read(KEY_RIGHTMETA), "flags 54 100000");
    EXPECT_EQ(read(KEY_RIGHTALT), "flags 61 80000");
    EXPECT_EQ(read(KEY_RIGHTALT, 0, XKB_KEY_ISO_Level3_Shift), "flags 61 80000");
    EXPECT_EQ(read(KEY_LEFTCTRL), "flags 59 40000");
    EXPECT_EQ(read(KEY_LEFTSHIFT, control), "flags 56 60000");
    EXPECT_EQ(read(KEY_RIGHTMETA, mod4), "flags 54 100000");
    EXPECT_EQ(read(KEY_RIGHTCTRL, shift), "flags 54 120000");
}

TEST(XkbWindowKeys, capsLock_showsWhatItsPressMakesOfTheLock) {
    EXPECT_EQ(read(KEY_CAPSLOCK, 0, XKB_KEY_Caps_Lock), "flags 57 10000");
    EXPECT_EQ(read(KEY_CAPSLOCK, lock, XKB_KEY_Caps_Lock), "flags 57 0");
}

TEST(XkbWindowKeys, capsLockThatTheLayoutMadeAnotherKey_isNone) {
    EXPECT_EQ(read(KEY_CAPSLOCK, 0, XKB_KEY_Control_L), "nothing");
    EXPECT_EQ(read(KEY_CAPSLOCK, 0, XKB_KEY_ISO_Next_Group), "nothing");
    EXPECT_EQ(read(KEY_LEFTCTRL, 0, XKB_KEY_Caps_Lock), "flags 59 40000"); // ctrl:swapcaps
}

TEST(XkbWindowKeys, capsLockThatTheLayoutMadeEscape_isEscapeAloneAndNoneInAChord) {
    EXPECT_EQ(read(KEY_CAPSLOCK, 0, XKB_KEY_Escape), "down 53 0");
    EXPECT_EQ(read(KEY_CAPSLOCK, mod2 | mod5, XKB_KEY_Escape), "down 53 0");
    EXPECT_EQ(read(KEY_CAPSLOCK, control, XKB_KEY_Escape), "nothing");
}

TEST(XkbWindowKeys, composeKey_isKnownByItsPlace) {
    EXPECT_EQ(read(KEY_RIGHTCTRL, 0, XKB_KEY_Multi_key), "flags 54 100000");
    EXPECT_EQ(read(KEY_RIGHTALT, 0, XKB_KEY_Multi_key), "flags 61 80000");
}

TEST(XkbWindowKeys, layoutInUse_changesNothing) {
    constexpr std::uint32_t secondGroup = 1U << 13U;
    EXPECT_EQ(read(KEY_K, control | secondGroup, XKB_KEY_Cyrillic_el), "down 40 40000");
}

TEST(XkbWindowKeys, keysWithoutANumber_areNothing) {
    EXPECT_EQ(read(KEY_WWW), "nothing");
    EXPECT_FALSE(XkbWindowKeys().read({.scanCode = 0}));
    EXPECT_FALSE(XkbWindowKeys().read({.scanCode = 0xFFFFFFFF}));
}

TEST(XkbWindowKeys, repeat_isToldAsOne) {
    const XkbWindowKeys keys;
    EXPECT_TRUE(keys.read({.scanCode = KEY_A + 8, .autorepeat = true})->autorepeat);
    EXPECT_FALSE(keys.read({.scanCode = KEY_A + 8})->autorepeat);
}

} // namespace
