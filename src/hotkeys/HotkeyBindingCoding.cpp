// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyBinding.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <limits>

namespace talvera {

namespace {

using Kind = HotkeyBinding::DecodingError::Kind;

namespace CodingKeys {
constexpr QLatin1String chord("chord");
constexpr QLatin1String holdSpecial("holdSpecial");
} // namespace CodingKeys

namespace ChordCodingKeys {
constexpr QLatin1String modifiers("modifiers");
constexpr QLatin1String keyCode("keyCode");
} // namespace ChordCodingKeys

namespace HoldSpecialCodingKeys {
constexpr QLatin1String _0("_0");
} // namespace HoldSpecialCodingKeys

QJsonValue member(const QJsonObject& object, QLatin1String key) {
    const auto found = object.constFind(key);
    if (found == object.constEnd())
        throw HotkeyBinding::DecodingError(Kind::KeyNotFound,
                                           QStringLiteral("No value for key \"%1\".").arg(key));
    return *found;
}

QJsonObject nestedObject(const QJsonObject& object, QLatin1String key) {
    const auto value = member(object, key);
    if (!value.isObject())
        throw HotkeyBinding::DecodingError(Kind::TypeMismatch,
                                           QStringLiteral("Expected an object under \"%1\".").arg(key));
    return value.toObject();
}

/// The number `about` under `key` as it is written in `json`: Qt keeps whole numbers only up to 2^63.
std::optional<std::uint64_t> largeNumber(const QByteArray& json, QLatin1String key, double about) {
    const QRegularExpression written(QStringLiteral("\"%1\"\\s*:\\s*([0-9]+)\\s*[,}]").arg(key));
    bool fits = false;
    const auto number = written.match(QString::fromUtf8(json)).captured(1).toULongLong(&fits);
    if (!fits || static_cast<double>(number) != about)
        return std::nullopt;
    return number;
}

template <typename Number>
Number unsignedNumber(const QJsonObject& object, QLatin1String key, const QByteArray& json) {
    const auto value = member(object, key);
    if (!value.isDouble())
        throw HotkeyBinding::DecodingError(Kind::TypeMismatch,
                                           QStringLiteral("Expected a number under \"%1\".").arg(key));
    std::optional<std::uint64_t> number;
    if (const auto whole = value.toInteger(-1); whole >= 0)
        number = static_cast<std::uint64_t>(whole);
    else if (value.toDouble() > 0)
        number = largeNumber(json, key, value.toDouble());
    if (!number || *number > std::numeric_limits<Number>::max())
        throw HotkeyBinding::DecodingError(Kind::DataCorrupted,
                                           QStringLiteral("The number under \"%1\" does not fit.").arg(key));
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
            .arg(chord->keyCode)
            .toUtf8();
    return QStringLiteral(R"({"holdSpecial":{"_0":"%1"}})").arg(rawValue(*asSpecialKey())).toUtf8();
}

HotkeyBinding HotkeyBinding::decoded(const QByteArray& json) {
    QJsonParseError syntax;
    const auto document = QJsonDocument::fromJson(json, &syntax);
    if (syntax.error != QJsonParseError::NoError)
        throw DecodingError(Kind::DataCorrupted, QStringLiteral("The data is not valid JSON."));
    if (!document.isObject())
        throw DecodingError(Kind::TypeMismatch, QStringLiteral("Expected an object."));
    const auto object = document.object();
    if (object.contains(CodingKeys::chord) == object.contains(CodingKeys::holdSpecial))
        throw DecodingError(Kind::TypeMismatch,
                            QStringLiteral("Invalid number of keys found, expected one."));

    if (object.contains(CodingKeys::chord)) {
        const auto fields = nestedObject(object, CodingKeys::chord);
        const auto modifiers = unsignedNumber<std::uint64_t>(fields, ChordCodingKeys::modifiers, json);
        return chord(modifiers, unsignedNumber<std::uint16_t>(fields, ChordCodingKeys::keyCode, json));
    }

    const auto raw = member(nestedObject(object, CodingKeys::holdSpecial), HoldSpecialCodingKeys::_0);
    if (!raw.isString())
        throw DecodingError(Kind::TypeMismatch, QStringLiteral("Expected a string under \"_0\"."));
    const auto key = specialKeyFromRawValue(raw.toString());
    if (!key)
        throw DecodingError(
            Kind::DataCorrupted,
            QStringLiteral("Cannot initialize SpecialKey from invalid String value %1").arg(raw.toString()));
    return holdSpecial(*key);
}

} // namespace talvera
