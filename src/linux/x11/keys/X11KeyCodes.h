// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/XKeycode.h"
#include "platform/keyboard/VirtualKey.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace talvera {

/// What the X protocol calls keys and modifiers, and what we call them.
namespace X11KeyCodes {

/// The X keycodes of a virtual key; none for keys that X can't name.
std::vector<XKeycode> fromVirtual(VirtualKey key);

/// The virtual key of an X keycode.
std::optional<VirtualKey> toVirtual(XKeycode keycode);

/// KeyFlag bits of an X modifier state.
std::uint64_t flagsFromState(std::uint16_t state);

/// The X modifiers that stand for these KeyFlag bits; nothing when X has none for one of them.
std::optional<std::uint16_t> modifiersFromFlags(std::uint64_t flags);

inline constexpr XKeycode rightControl{105};

} // namespace X11KeyCodes

} // namespace talvera
