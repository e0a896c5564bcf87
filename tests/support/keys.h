// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/XKeycode.h"

#include <linux/input-event-codes.h>

/// The keys of the rig's keyboards, by X keycode: places, whatever the layout.
namespace talvera::test::Key {

constexpr XKeycode onX(int evdevCode) {
    return XKeycode(evdevCode + 8);
}

inline constexpr XKeycode a = onX(KEY_A);
inline constexpr XKeycode e = onX(KEY_E);
inline constexpr XKeycode g = onX(KEY_G);
inline constexpr XKeycode h = onX(KEY_H);
inline constexpr XKeycode k = onX(KEY_K);
inline constexpr XKeycode n = onX(KEY_N);
inline constexpr XKeycode s = onX(KEY_S);
inline constexpr XKeycode q = onX(KEY_Q);
inline constexpr XKeycode t = onX(KEY_T);
inline constexpr XKeycode v = onX(KEY_V);
inline constexpr XKeycode y = onX(KEY_Y);
inline constexpr XKeycode escape = onX(KEY_ESC);
inline constexpr XKeycode f5 = onX(KEY_F5);
inline constexpr XKeycode f8 = onX(KEY_F8);
inline constexpr XKeycode insert = onX(KEY_INSERT);
inline constexpr XKeycode left = onX(KEY_LEFT);
inline constexpr XKeycode enter = onX(KEY_ENTER);
inline constexpr XKeycode space = onX(KEY_SPACE);
inline constexpr XKeycode tab = onX(KEY_TAB);

inline constexpr XKeycode leftAlt = onX(KEY_LEFTALT);
inline constexpr XKeycode leftControl = onX(KEY_LEFTCTRL);
inline constexpr XKeycode leftShift = onX(KEY_LEFTSHIFT);
inline constexpr XKeycode rightShift = onX(KEY_RIGHTSHIFT);
inline constexpr XKeycode leftSuper = onX(KEY_LEFTMETA);
inline constexpr XKeycode rightAlt = onX(KEY_RIGHTALT);
inline constexpr XKeycode rightControl = onX(KEY_RIGHTCTRL);
inline constexpr XKeycode rightSuper = onX(KEY_RIGHTMETA);
inline constexpr XKeycode wakeUp = onX(KEY_WAKEUP); ///< where keyboards have Fn

inline constexpr XKeycode capsLock = onX(KEY_CAPSLOCK);
inline constexpr XKeycode numLock = onX(KEY_NUMLOCK);
inline constexpr XKeycode scrollLock = onX(KEY_SCROLLLOCK);

} // namespace talvera::test::Key
