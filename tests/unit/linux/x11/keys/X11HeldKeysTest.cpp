// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11HeldKeys.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

constexpr XKeycode a{38};
constexpr XKeycode itsNeighbours[]{XKeycode{37}, XKeycode{39}};

TEST(X11HeldKeys, key_isHeldWhileAnyKeyboardHoldsIt) {
    X11HeldKeys keys;
    keys.press(6, a);
    keys.press(7, a);
    keys.release(6, a);
    EXPECT_TRUE(keys.isHeld(a));
    keys.release(7, a);
    EXPECT_FALSE(keys.isHeld(a));
}

TEST(X11HeldKeys, releaseWithoutPress_isNothing) {
    X11HeldKeys keys;
    keys.press(6, a);
    keys.release(7, a);
    EXPECT_TRUE(keys.isHeld(a));
    for (const auto neighbour : itsNeighbours)
        EXPECT_FALSE(keys.isHeld(neighbour));
}

TEST(X11HeldKeys, keysThatMatterNoLonger_areForgotten) {
    X11HeldKeys keys;
    keys.press(6, a);
    keys.keepKeys(std::bitset<xKeycodeCount>().set(indexOf(a)));
    EXPECT_TRUE(keys.isHeld(a));
    keys.keepKeys({});
    EXPECT_FALSE(keys.isHeld(a));
}

} // namespace
