// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace talvera {

/// Virtual key codes name physical keys, and so do X keycodes (evdev code + 8): these map one to the other,
/// whatever the layout. Key 54, "right Command", is Right Super and also Right Ctrl, since most PC keyboards
/// have no Right Super. Key 63 is Fn on keyboards that report it as the wake-up key, as ThinkPads do; most
/// keep it to themselves.
namespace X11KeyCodes {

/// The X keycodes of a virtual key; none for keys that X can't name.
std::vector<std::uint8_t> fromVirtual(std::uint16_t keyCode);

/// The virtual key of an X keycode.
std::optional<std::uint16_t> toVirtual(std::uint8_t keycode);

/// KeyFlag bits of an X modifier state.
std::uint64_t flagsFromState(std::uint16_t state);

/// The X modifiers that stand for these KeyFlag bits; nothing when X has none for one of them.
std::optional<std::uint16_t> modifiersFromFlags(std::uint64_t flags);

inline constexpr std::uint8_t rightControl = 105;
inline constexpr std::uint8_t rightAlt = 108;

} // namespace X11KeyCodes

} // namespace talvera
