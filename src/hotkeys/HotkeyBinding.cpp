// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyBinding.h"

#include "platform/keyboard/EventTap.h"
#include "platform/keyboard/KeyboardLayout.h"

#include <QHash>

namespace talvera {

namespace {

// By the index of the special key.
constexpr std::array<std::uint16_t, 4> specialKeyCodes{63, 54, 61, 57};
constexpr std::array<std::uint64_t, 4> specialHeldFlags{KeyFlag::Fn, KeyFlag::Command, KeyFlag::Option,
                                                        KeyFlag::CapsLock};

std::size_t indexOf(HotkeyBinding::SpecialKey key) {
    return static_cast<std::size_t>(key);
}

QString displayName(HotkeyBinding::SpecialKey key) {
    switch (key) {
    case HotkeyBinding::SpecialKey::Fn:
        return QStringLiteral("Fn hold");
    case HotkeyBinding::SpecialKey::RightCommand:
        return QStringLiteral("Right ⌘ hold");
    case HotkeyBinding::SpecialKey::RightOption:
        return QStringLiteral("Right ⌥ hold");
    case HotkeyBinding::SpecialKey::CapsLock:
        return QStringLiteral("Caps Lock hold");
    }
    Q_UNREACHABLE();
}

/// The name of a key that is called the same on every layout.
QString fixedKeyName(std::uint16_t keyCode) {
    switch (keyCode) {
    case 36:
        return QStringLiteral("Return");
    case 48:
        return QStringLiteral("Tab");
    case 49:
        return QStringLiteral("Space");
    case 51:
        return QStringLiteral("Delete");
    case 53:
        return QStringLiteral("Esc");
    case 123:
        return QStringLiteral("←");
    case 124:
        return QStringLiteral("→");
    case 125:
        return QStringLiteral("↓");
    case 126:
        return QStringLiteral("↑");
    default:
        return {};
    }
}

} // namespace

HotkeyBinding HotkeyBinding::chord(std::uint64_t modifiers, std::uint16_t keyCode) {
    return HotkeyBinding(Chord{modifiers, keyCode});
}

HotkeyBinding HotkeyBinding::holdSpecial(SpecialKey key) {
    return HotkeyBinding(key);
}

QString HotkeyBinding::displayString(KeyboardLayout& layout) const {
    if (const auto* special = asSpecialKey())
        return displayName(*special);
    const auto& chord = *asChord();
    QString text;
    if (chord.modifiers & KeyFlag::Control)
        text += u'⌃';
    if (chord.modifiers & KeyFlag::Option)
        text += u'⌥';
    if (chord.modifiers & KeyFlag::Shift)
        text += u'⇧';
    if (chord.modifiers & KeyFlag::Command)
        text += u'⌘';
    return text + keyName(chord.keyCode, layout);
}

QString HotkeyBinding::keyName(std::uint16_t keyCode, KeyboardLayout& layout) {
    if (const auto name = fixedKeyName(keyCode); !name.isEmpty())
        return name;
    if (const auto character = layoutCharacter(keyCode, layout))
        return character->toUpper();
    return QStringLiteral("Key %1").arg(keyCode);
}

std::optional<QString> HotkeyBinding::layoutCharacter(std::uint16_t keyCode, KeyboardLayout& layout) {
    auto character = layout.character(keyCode);
    if (character && character->isEmpty())
        return std::nullopt;
    return character;
}

QString rawValue(HotkeyBinding::SpecialKey key) {
    switch (key) {
    case HotkeyBinding::SpecialKey::Fn:
        return QStringLiteral("fn");
    case HotkeyBinding::SpecialKey::RightCommand:
        return QStringLiteral("rightCommand");
    case HotkeyBinding::SpecialKey::RightOption:
        return QStringLiteral("rightOption");
    case HotkeyBinding::SpecialKey::CapsLock:
        return QStringLiteral("capsLock");
    }
    Q_UNREACHABLE();
}

std::optional<HotkeyBinding::SpecialKey> specialKeyFromRawValue(const QString& raw) {
    for (const auto key : HotkeyBinding::allSpecialKeys) {
        if (raw == rawValue(key))
            return key;
    }
    return std::nullopt;
}

std::uint16_t keyCode(HotkeyBinding::SpecialKey key) {
    return specialKeyCodes.at(indexOf(key));
}

std::uint64_t heldFlag(HotkeyBinding::SpecialKey key) {
    return specialHeldFlags.at(indexOf(key));
}

std::size_t qHash(const HotkeyBinding& binding, std::size_t seed) {
    if (const auto* chord = binding.asChord())
        return qHashMulti(seed, 0, quint64(chord->modifiers), chord->keyCode);
    return qHashMulti(seed, 1, static_cast<int>(*binding.asSpecialKey()));
}

} // namespace talvera
