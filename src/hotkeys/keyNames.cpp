// SPDX-License-Identifier: MIT
#include "hotkeys/keyNames.h"

#include "text/Localization.h"

namespace talvera {

QString specialKeyName(HotkeyBinding::SpecialKey key) {
    switch (key) {
    case HotkeyBinding::SpecialKey::Fn:
        return localized("hotkey.name.fn", "Fn hold");
    case HotkeyBinding::SpecialKey::RightCommand:
        return localized("hotkey.name.rightCommand", "Right ⌘ hold");
    case HotkeyBinding::SpecialKey::RightOption:
        return localized("hotkey.name.rightOption", "Right ⌥ hold");
    case HotkeyBinding::SpecialKey::CapsLock:
        return localized("hotkey.name.capsLock", "Caps Lock hold");
    }
    Q_UNREACHABLE();
}

QString modifierNames(std::uint64_t modifiers) {
    QString names;
    if (modifiers & KeyFlag::Control)
        names += localized("hotkey.modifier.control", "⌃");
    if (modifiers & KeyFlag::Option)
        names += localized("hotkey.modifier.option", "⌥");
    if (modifiers & KeyFlag::Shift)
        names += localized("hotkey.modifier.shift", "⇧");
    if (modifiers & KeyFlag::Command)
        names += localized("hotkey.modifier.command", "⌘");
    return names;
}

QString specialKeyCap(HotkeyBinding::SpecialKey key) {
    switch (key) {
    case HotkeyBinding::SpecialKey::Fn:
        return localized("hotkey.cap.fn", "fn");
    case HotkeyBinding::SpecialKey::RightCommand:
        return localized("hotkey.cap.rightCommand", "Right ⌘");
    case HotkeyBinding::SpecialKey::RightOption:
        return localized("hotkey.cap.rightOption", "Right ⌥");
    case HotkeyBinding::SpecialKey::CapsLock:
        return localized("hotkey.cap.capsLock", "⇪");
    }
    Q_UNREACHABLE();
}

QStringList modifierCaps(std::uint64_t modifiers) {
    QStringList caps;
    if (modifiers & KeyFlag::Control)
        caps += localized("hotkey.cap.control", "⌃");
    if (modifiers & KeyFlag::Option)
        caps += localized("hotkey.cap.option", "⌥");
    if (modifiers & KeyFlag::Shift)
        caps += localized("hotkey.cap.shift", "⇧");
    if (modifiers & KeyFlag::Command)
        caps += localized("hotkey.cap.command", "⌘");
    return caps;
}

std::optional<QString> fixedKeyName(VirtualKey key) {
    switch (key) {
    case VirtualKey::Return:
        return localized("hotkey.key.return", "Return");
    case VirtualKey::Tab:
        return localized("hotkey.key.tab", "Tab");
    case VirtualKey::Space:
        return localized("hotkey.key.space", "Space");
    case VirtualKey::Backspace:
        return localized("hotkey.key.backspace", "Delete");
    case VirtualKey::Escape:
        return localized("hotkey.key.escape", "Esc");
    case VirtualKey::Left:
        return localized("hotkey.key.left", "←");
    case VirtualKey::Right:
        return localized("hotkey.key.right", "→");
    case VirtualKey::Down:
        return localized("hotkey.key.down", "↓");
    case VirtualKey::Up:
        return localized("hotkey.key.up", "↑");
    default:
        return std::nullopt;
    }
}

QString nameOfKeyWithoutCharacter(VirtualKey key) {
    switch (key) {
    case VirtualKey::F1:
        return localized("hotkey.key.f1", "Key 122");
    case VirtualKey::F2:
        return localized("hotkey.key.f2", "Key 120");
    case VirtualKey::F3:
        return localized("hotkey.key.f3", "Key 99");
    case VirtualKey::F4:
        return localized("hotkey.key.f4", "Key 118");
    case VirtualKey::F5:
        return localized("hotkey.key.f5", "Key 96");
    case VirtualKey::F6:
        return localized("hotkey.key.f6", "Key 97");
    case VirtualKey::F7:
        return localized("hotkey.key.f7", "Key 98");
    case VirtualKey::F8:
        return localized("hotkey.key.f8", "Key 100");
    case VirtualKey::F9:
        return localized("hotkey.key.f9", "Key 101");
    case VirtualKey::F10:
        return localized("hotkey.key.f10", "Key 109");
    case VirtualKey::F11:
        return localized("hotkey.key.f11", "Key 103");
    case VirtualKey::F12:
        return localized("hotkey.key.f12", "Key 111");
    case VirtualKey::F13:
        return localized("hotkey.key.print", "Key 105");
    case VirtualKey::F14:
        return localized("hotkey.key.scrollLock", "Key 107");
    case VirtualKey::F15:
        return localized("hotkey.key.pause", "Key 113");
    case VirtualKey::Menu:
        return localized("hotkey.key.menu", "Key 110");
    case VirtualKey::Insert:
        return localized("hotkey.key.insert", "Key 114");
    case VirtualKey::Delete:
        return localized("hotkey.key.delete", "Key 117");
    case VirtualKey::Home:
        return localized("hotkey.key.home", "Key 115");
    case VirtualKey::End:
        return localized("hotkey.key.end", "Key 119");
    case VirtualKey::PageUp:
        return localized("hotkey.key.pageUp", "Key 116");
    case VirtualKey::PageDown:
        return localized("hotkey.key.pageDown", "Key 121");
    default:
        return formatted(localized("hotkey.key.other", "Key %lld"), static_cast<std::uint16_t>(key));
    }
}

} // namespace talvera
