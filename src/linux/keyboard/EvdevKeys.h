// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/VirtualKey.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace talvera {

/// A physical key as the kernel numbers it: one of the KEY_ codes of linux/input-event-codes.h.
enum class EvdevCode : std::uint16_t {};

/// Both virtual keys and evdev codes name physical keys: these map one to the other, whatever the layout.
/// RightCommand is Right Super and also Right Ctrl, since most PC keyboards have no Right Super. Fn is the
/// wake-up key, as which ThinkPads report theirs; most keyboards keep theirs to themselves.
namespace EvdevKeys {

/// None for keys that no keyboard here can have.
std::vector<EvdevCode> fromVirtual(VirtualKey key);

std::optional<VirtualKey> toVirtual(EvdevCode code);

} // namespace EvdevKeys

} // namespace talvera
