// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyBinding.h"

#include "hotkeys/keyNames.h"
#include "platform/keyboard/KeyboardLayout.h"

#include <QHash>

namespace talvera {

namespace {

// By the index of the special key.
constexpr std::array specialKeyCodes{VirtualKey::Fn, VirtualKey::RightCommand, VirtualKey::RightOption,
                                     VirtualKey::CapsLock};
constexpr std::array specialHeldFlags{KeyFlag::Fn, KeyFlag::Command, KeyFlag::Option, KeyFlag::CapsLock};

std::size_t indexOf(HotkeyBinding::SpecialKey key) {
    return static_cast<std::size_t>(key);
}

} // namespace

HotkeyBinding HotkeyBinding::chord(std::uint64_t modifiers, VirtualKey keyCode) {
    return HotkeyBinding(Chord{modifiers, keyCode});
}

HotkeyBinding HotkeyBinding::holdSpecial(SpecialKey key) {
    return HotkeyBinding(key);
}

QString HotkeyBinding::displayString(KeyboardLayout& layout) const {
    if (const auto* special = asSpecialKey())
        return specialKeyName(*special);
    const auto& chord = *asChord();
    return modifierNames(chord.modifiers) + keyName(chord.keyCode, layout);
}

QStringList HotkeyBinding::keyCaps(KeyboardLayout& layout) const {
    if (const auto* special = asSpecialKey())
        return {specialKeyCap(*special)};
    const auto& chord = *asChord();
    return modifierCaps(chord.modifiers) << keyName(chord.keyCode, layout);
}

QString HotkeyBinding::keyName(VirtualKey key, KeyboardLayout& layout) {
    if (auto name = fixedKeyName(key))
        return *name;
    if (const auto character = layoutCharacter(key, layout))
        return character->toUpper();
    return nameOfKeyWithoutCharacter(key);
}

std::optional<QString> HotkeyBinding::layoutCharacter(VirtualKey key, KeyboardLayout& layout) {
    auto character = layout.character(key);
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

VirtualKey keyCode(HotkeyBinding::SpecialKey key) {
    return specialKeyCodes.at(indexOf(key));
}

std::uint64_t heldFlag(HotkeyBinding::SpecialKey key) {
    return specialHeldFlags.at(indexOf(key));
}

std::size_t qHash(const HotkeyBinding& binding, std::size_t seed) {
    if (const auto* chord = binding.asChord())
        return qHashMulti(seed, 0, quint64(chord->modifiers), static_cast<std::uint16_t>(chord->keyCode));
    return qHashMulti(seed, 1, static_cast<int>(*binding.asSpecialKey()));
}

} // namespace talvera
