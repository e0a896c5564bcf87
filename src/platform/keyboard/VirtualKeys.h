// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"

#include <cstdint>

namespace talvera {

/// The KeyFlag bit that a modifier key switches, by its virtual key code; 0 for keys that switch none. These
/// keys have flag changes in place of key downs and key ups.
constexpr std::uint64_t flagOfModifierKey(std::uint16_t keyCode) {
    switch (keyCode) {
    case 54:
    case 55:
        return KeyFlag::Command;
    case 56:
    case 60:
        return KeyFlag::Shift;
    case 57:
        return KeyFlag::CapsLock;
    case 58:
    case 61:
        return KeyFlag::Option;
    case 59:
    case 62:
        return KeyFlag::Control;
    case 63:
        return KeyFlag::Fn;
    default:
        return 0;
    }
}

constexpr bool isModifierKey(std::uint16_t keyCode) {
    return flagOfModifierKey(keyCode) != 0;
}

/// The event begins a press of its key, or shows that one goes on; otherwise it ends one.
constexpr bool isPress(const KeyEvent& event) {
    return event.type == KeyEventType::KeyDown || (event.type == KeyEventType::FlagsChanged &&
                                                   (event.flags & flagOfModifierKey(event.keyCode)) != 0);
}

} // namespace talvera
