// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/VirtualKey.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <variant>

namespace talvera {

class KeyboardLayout;

/// Which key the user holds to talk: a chord, or one special key held alone. A plain value.
class HotkeyBinding {
public:
    /// Modifiers and a key.
    struct Chord {
        std::uint64_t modifiers = 0; ///< KeyFlag bits, all of which must be held
        VirtualKey keyCode = {};

        bool operator==(const Chord&) const = default;
    };

    enum class SpecialKey { Fn, RightCommand, RightOption, CapsLock };
    static constexpr std::array allSpecialKeys{SpecialKey::Fn, SpecialKey::RightCommand,
                                               SpecialKey::RightOption, SpecialKey::CapsLock};

    class DecodingError;

    /// Control + Option + Space.
    HotkeyBinding() = default;

    static HotkeyBinding chord(std::uint64_t modifiers, VirtualKey keyCode);
    static HotkeyBinding holdSpecial(SpecialKey key);

    const Chord* asChord() const { return std::get_if<Chord>(&m_value); }
    const SpecialKey* asSpecialKey() const { return std::get_if<SpecialKey>(&m_value); }

    bool operator==(const HotkeyBinding&) const = default;

    /// The persisted form, JSON.
    QByteArray encoded() const;

    /// Reads the persisted form; throws DecodingError.
    static HotkeyBinding decoded(const QByteArray& data);

    /// The name shown to the user, in the words of the loaded catalogs. It follows the layout that is active
    /// now. Main thread only.
    QString displayString(KeyboardLayout& layout) const;

    /// The caps of its keys as they look on the keyboard, in the order of `displayString`. Main thread only.
    QStringList keyCaps(KeyboardLayout& layout) const;

    /// The name of a key, which stands at the end of a chord's display string. Main thread only.
    static QString keyName(VirtualKey key, KeyboardLayout& layout);

    /// What the key writes without modifiers; nothing when that is no text. Main thread only.
    static std::optional<QString> layoutCharacter(VirtualKey key, KeyboardLayout& layout);

private:
    explicit HotkeyBinding(std::variant<Chord, SpecialKey> value)
        : m_value(value) {}

    std::variant<Chord, SpecialKey> m_value = Chord{KeyFlag::Control | KeyFlag::Option, VirtualKey::Space};
};

/// What is wrong with a persisted binding.
class HotkeyBinding::DecodingError : public std::exception {
public:
    enum class Kind { DataCorrupted, TypeMismatch, KeyNotFound };

    DecodingError(Kind kind, const QString& description);

    Kind kind() const { return m_kind; }
    const QString& description() const { return m_description; }
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    Kind m_kind;
    QString m_description;
    std::string m_what;
};

/// The persisted form of a special key.
QString rawValue(HotkeyBinding::SpecialKey key);
/// The special key whose persisted form is exactly `raw`, if there is one.
std::optional<HotkeyBinding::SpecialKey> specialKeyFromRawValue(const QString& raw);

/// The key that a special key is.
VirtualKey keyCode(HotkeyBinding::SpecialKey key);
/// The flag bit that tells that the key is held. It may be shared with the key's left twin.
std::uint64_t heldFlag(HotkeyBinding::SpecialKey key);

std::size_t qHash(const HotkeyBinding& binding, std::size_t seed = 0);

} // namespace talvera

template <>
struct std::hash<talvera::HotkeyBinding> {
    std::size_t operator()(const talvera::HotkeyBinding& binding) const { return qHash(binding); }
};
