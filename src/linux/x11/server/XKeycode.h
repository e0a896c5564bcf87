// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace talvera {

/// A physical key as the X protocol numbers it: its evdev code + 8. Neither a virtual key nor a keysym, which
/// says what a key writes.
enum class XKeycode : std::uint8_t {};

/// How many there are, for tables by keycode.
inline constexpr std::size_t xKeycodeCount = 256;

constexpr std::size_t indexOf(XKeycode keycode) {
    return static_cast<std::size_t>(keycode);
}

} // namespace talvera
