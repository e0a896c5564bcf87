// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/kwinShortcutOf.h"

#include "platform/keyboard/KeyboardLayout.h"

#include <QList>

#include <algorithm>
#include <array>
#include <utility>

namespace talvera {

namespace {

constexpr std::array<std::pair<std::uint64_t, Qt::KeyboardModifier>, 4> modifiers{{
    {KeyFlag::Shift, Qt::ShiftModifier},
    {KeyFlag::Control, Qt::ControlModifier},
    {KeyFlag::Option, Qt::AltModifier},
    {KeyFlag::Command, Qt::MetaModifier},
}};
constexpr std::uint64_t possible = KeyFlag::Shift | KeyFlag::Control | KeyFlag::Option | KeyFlag::Command;

constexpr std::array<std::pair<VirtualKey, Qt::Key>, 39> keysWithoutCharacter{{
    {VirtualKey::Return, Qt::Key_Return},
    {VirtualKey::Tab, Qt::Key_Tab},
    {VirtualKey::Space, Qt::Key_Space},
    {VirtualKey::Backspace, Qt::Key_Backspace},
    {VirtualKey::Escape, Qt::Key_Escape},
    {VirtualKey::F1, Qt::Key_F1},
    {VirtualKey::F2, Qt::Key_F2},
    {VirtualKey::F3, Qt::Key_F3},
    {VirtualKey::F4, Qt::Key_F4},
    {VirtualKey::F5, Qt::Key_F5},
    {VirtualKey::F6, Qt::Key_F6},
    {VirtualKey::F7, Qt::Key_F7},
    {VirtualKey::F8, Qt::Key_F8},
    {VirtualKey::F9, Qt::Key_F9},
    {VirtualKey::F10, Qt::Key_F10},
    {VirtualKey::F11, Qt::Key_F11},
    {VirtualKey::F12, Qt::Key_F12},
    {VirtualKey::F16, Qt::Key_F16},
    {VirtualKey::F17, Qt::Key_F17},
    {VirtualKey::F18, Qt::Key_F18},
    {VirtualKey::F19, Qt::Key_F19},
    {VirtualKey::F20, Qt::Key_F20},
    {VirtualKey::Home, Qt::Key_Home},
    {VirtualKey::End, Qt::Key_End},
    {VirtualKey::PageUp, Qt::Key_PageUp},
    {VirtualKey::PageDown, Qt::Key_PageDown},
    {VirtualKey::Delete, Qt::Key_Delete},
    {VirtualKey::Left, Qt::Key_Left},
    {VirtualKey::Right, Qt::Key_Right},
    {VirtualKey::Up, Qt::Key_Up},
    {VirtualKey::Down, Qt::Key_Down},
    {VirtualKey::Menu, Qt::Key_Menu},
    {VirtualKey::VolumeUp, Qt::Key_VolumeUp},
    {VirtualKey::VolumeDown, Qt::Key_VolumeDown},
    {VirtualKey::Mute, Qt::Key_VolumeMute},
    {VirtualKey::Insert, Qt::Key_Insert},
    {VirtualKey::F13, Qt::Key_Print},
    {VirtualKey::F14, Qt::Key_ScrollLock},
    {VirtualKey::F15, Qt::Key_Pause},
}};

std::optional<int> keyOf(VirtualKey key, KeyboardLayout& layout) {
    const auto known = std::ranges::find(keysWithoutCharacter, key, &std::pair<VirtualKey, Qt::Key>::first);
    if (known != keysWithoutCharacter.end())
        return known->second;
    const auto written = layout.character(key);
    if (!written || written->isEmpty())
        return std::nullopt;
    return static_cast<int>(written->toUpper().toUcs4().constFirst()); // Qt's keys of characters are these
}

} // namespace

std::optional<int> kwinShortcutOf(const KeyChord& chord, KeyboardLayout& layout) {
    if ((chord.modifiers & ~possible) != 0 || isModifierKey(chord.keyCode))
        return std::nullopt;
    auto shortcut = keyOf(chord.keyCode, layout);
    for (const auto& [flag, modifier] : modifiers) {
        if (shortcut && (chord.modifiers & flag) != 0)
            *shortcut |= static_cast<int>(modifier);
    }
    return shortcut;
}

} // namespace talvera
