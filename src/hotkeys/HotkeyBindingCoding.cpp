// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyBinding.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace talvera {

namespace {

using nlohmann::json;
using Kind = HotkeyBinding::DecodingError::Kind;

namespace CodingKeys {
constexpr auto chord = "chord";
constexpr auto holdSpecial = "holdSpecial";
} // namespace CodingKeys

namespace ChordCodingKeys {
constexpr auto modifiers = "modifiers";
constexpr auto keyCode = "keyCode";
} // namespace ChordCodingKeys

namespace HoldSpecialCodingKeys {
constexpr auto _0 = "_0";
} // namespace HoldSpecialCodingKeys

[[noreturn]] void fail(Kind kind, const char* description, const QString& name = {}) {
    const auto text = QString::fromUtf8(description);
    throw HotkeyBinding::DecodingError(kind, name.isNull() ? text : text.arg(name));
}

const json& member(const json& object, const char* key) {
    const auto found = object.find(key);
    if (found == object.end())
        fail(Kind::KeyNotFound, "No value for key \"%1\".", QString::fromUtf8(key));
    return *found;
}

const json& nestedObject(const json& object, const char* key) {
    const auto& value = member(object, key);
    if (!value.is_object())
        fail(Kind::TypeMismatch, "Expected an object under \"%1\".", QString::fromUtf8(key));
    return value;
}

/// The number if it is whole and neither negative nor too large, also when it is written like 49.0.
std::optional<std::uint64_t> wholeNumber(const json& value) {
    if (value.is_number_unsigned())
        return value.get<std::uint64_t>();
    const auto number = value.get<double>();
    if (number < 0 || number >= std::ldexp(1.0, 64) || number != std::floor(number))
        return std::nullopt;
    return static_cast<std::uint64_t>(number);
}

template <typename Number>
Number unsignedNumber(const json& object, const char* key) {
    const auto& value = member(object, key);
    if (!value.is_number())
        fail(Kind::TypeMismatch, "Expected a number under \"%1\".", QString::fromUtf8(key));
    const auto number = wholeNumber(value);
    if (!number || *number > std::numeric_limits<Number>::max())
        fail(Kind::DataCorrupted, "The number under \"%1\" does not fit.", QString::fromUtf8(key));
    return static_cast<Number>(*number);
}

} // namespace

HotkeyBinding::DecodingError::DecodingError(Kind kind, const QString& description)
    : m_kind(kind)
    , m_description(description)
    , m_what(description.toStdString()) {}

QByteArray HotkeyBinding::encoded() const {
    // By hand, since the order of the fields belongs to the form.
    if (const auto* chord = asChord())
        return QStringLiteral(R"({"chord":{"modifiers":%1,"keyCode":%2}})")
            .arg(chord->modifiers)
            .arg(static_cast<std::uint16_t>(chord->keyCode))
            .toUtf8();
    return QStringLiteral(R"({"holdSpecial":{"_0":"%1"}})").arg(rawValue(*asSpecialKey())).toUtf8();
}

HotkeyBinding HotkeyBinding::decoded(const QByteArray& data) {
    json document;
    try {
        document = json::parse(data.begin(), data.end());
    } catch (const json::exception&) {
        fail(Kind::DataCorrupted, "The data is not valid JSON.");
    }
    if (!document.is_object())
        fail(Kind::TypeMismatch, "Expected an object.");
    if (document.contains(CodingKeys::chord) == document.contains(CodingKeys::holdSpecial))
        fail(Kind::TypeMismatch, "Invalid number of keys found, expected one.");

    if (document.contains(CodingKeys::chord)) {
        const auto& fields = nestedObject(document, CodingKeys::chord);
        const auto modifiers = unsignedNumber<std::uint64_t>(fields, ChordCodingKeys::modifiers);
        const auto keyCode = unsignedNumber<std::uint16_t>(fields, ChordCodingKeys::keyCode);
        return chord(modifiers, VirtualKey(keyCode));
    }

    const auto& value = member(nestedObject(document, CodingKeys::holdSpecial), HoldSpecialCodingKeys::_0);
    if (!value.is_string())
        fail(Kind::TypeMismatch, "Expected a string under \"_0\".");
    const auto raw = QString::fromStdString(value.get<std::string>());
    const auto key = fromRawValue<HotkeyBinding::SpecialKey>(raw);
    if (!key)
        fail(Kind::DataCorrupted, "Cannot initialize SpecialKey from invalid String value %1", raw);
    return holdSpecial(*key);
}

} // namespace talvera
