// SPDX-License-Identifier: MIT
#pragma once

#include <linux/input-event-codes.h>

/// The keys of the rig's keyboards, by X keycode: places, whatever the layout.
namespace talvera::test::Key {

constexpr int onX(int evdevCode) {
    return evdevCode + 8;
}

inline constexpr int a = onX(KEY_A);
inline constexpr int e = onX(KEY_E);
inline constexpr int g = onX(KEY_G);
inline constexpr int h = onX(KEY_H);
inline constexpr int k = onX(KEY_K);
inline constexpr int n = onX(KEY_N);
inline constexpr int s = onX(KEY_S);
inline constexpr int v = onX(KEY_V);
inline constexpr int y = onX(KEY_Y);
inline constexpr int escape = onX(KEY_ESC);
inline constexpr int f5 = onX(KEY_F5);
inline constexpr int f8 = onX(KEY_F8);
inline constexpr int insert = onX(KEY_INSERT);
inline constexpr int left = onX(KEY_LEFT);
inline constexpr int enter = onX(KEY_ENTER);
inline constexpr int space = onX(KEY_SPACE);
inline constexpr int tab = onX(KEY_TAB);

inline constexpr int leftAlt = onX(KEY_LEFTALT);
inline constexpr int leftControl = onX(KEY_LEFTCTRL);
inline constexpr int leftShift = onX(KEY_LEFTSHIFT);
inline constexpr int rightShift = onX(KEY_RIGHTSHIFT);
inline constexpr int leftSuper = onX(KEY_LEFTMETA);
inline constexpr int rightAlt = onX(KEY_RIGHTALT);
inline constexpr int rightControl = onX(KEY_RIGHTCTRL);
inline constexpr int rightSuper = onX(KEY_RIGHTMETA);
inline constexpr int wakeUp = onX(KEY_WAKEUP); ///< where keyboards have Fn

inline constexpr int capsLock = onX(KEY_CAPSLOCK);
inline constexpr int numLock = onX(KEY_NUMLOCK);
inline constexpr int scrollLock = onX(KEY_SCROLLLOCK);

} // namespace talvera::test::Key
