// SPDX-License-Identifier: MIT
#include "linux/keyboard/XkbWindowKeys.h"

#include "linux/keyboard/EvdevKeys.h"

#include <array>
#include <limits>
#include <utility>

#include <xkbcommon/xkbcommon-keysyms.h>

namespace talvera {

namespace {

constexpr std::uint32_t evdevOffset = 8;

/// The real modifiers, which have the same bits everywhere. AltGr is none of them, so a chord has none of it.
constexpr std::array<std::pair<std::uint32_t, std::uint64_t>, 5> flagOfModifier{{
    {1U << 0U, KeyFlag::Shift},
    {1U << 1U, KeyFlag::CapsLock},
    {1U << 2U, KeyFlag::Control},
    {1U << 3U, KeyFlag::Option},
    {1U << 6U, KeyFlag::Command},
}};

std::uint64_t flagsOf(std::uint32_t modifiers) {
    std::uint64_t flags = 0;
    for (const auto& [modifier, flag] : flagOfModifier)
        flags |= (modifiers & modifier) != 0 ? flag : 0;
    return flags;
}

std::optional<VirtualKey> keyOf(std::uint32_t scanCode) {
    if (scanCode < evdevOffset || scanCode - evdevOffset > std::numeric_limits<std::uint16_t>::max())
        return std::nullopt;
    return EvdevKeys::toVirtual(EvdevCode(scanCode - evdevOffset));
}

} // namespace

std::optional<KeyEvent> XkbWindowKeys::read(const WindowKeyPress& press) const {
    const auto key = keyOf(press.scanCode);
    if (!key)
        return std::nullopt;
    const auto before = flagsOf(press.modifiers);
    if (!isModifierKey(*key))
        return KeyEvent{KeyEventType::KeyDown, *key, before, press.autorepeat};
    if (*key != VirtualKey::CapsLock)
        return KeyEvent{KeyEventType::FlagsChanged, *key, before | flagOfModifierKey(*key), press.autorepeat};
    // The layout may have made it another key, which locks nothing. Chords are known by places, so of these
    // only Escape alone counts.
    if (press.symbol == XKB_KEY_Escape && before == 0)
        return KeyEvent{KeyEventType::KeyDown, VirtualKey::Escape, 0, press.autorepeat};
    if (press.symbol != XKB_KEY_Caps_Lock)
        return std::nullopt;
    return KeyEvent{KeyEventType::FlagsChanged, *key, before ^ KeyFlag::CapsLock, press.autorepeat};
}

} // namespace talvera
