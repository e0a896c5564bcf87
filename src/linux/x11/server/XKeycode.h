// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>

namespace talvera {

/// A physical key as the X protocol numbers it: its evdev code + 8. Neither a virtual key nor an XKeysym,
/// which says what a key writes.
enum class XKeycode : std::uint8_t {};

/// How many there are, for tables by keycode.
inline constexpr std::size_t xKeycodeCount = 256;

/// The lowest that the protocol has. Zero stands for no key.
inline constexpr XKeycode lowestXKeycode{8};

constexpr std::size_t indexOf(XKeycode keycode) {
    return static_cast<std::size_t>(keycode);
}

/// A set of keycodes: the bits at their indices.
using XKeycodeBits = std::bitset<xKeycodeCount>;

} // namespace talvera
