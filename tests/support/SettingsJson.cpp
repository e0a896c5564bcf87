// SPDX-License-Identifier: MIT
#include "SettingsJson.h"

#include <stdexcept>

namespace talvera::test {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

/// The value as a T, whose JSON type must be that of `isRight`.
template <typename T>
T checked(const json& value, bool isRight, const char* what) {
    if (!isRight)
        throw std::invalid_argument(std::string("value must be ") + what);
    return value.get<T>();
}

void read(const json& value, bool& out) {
    out = checked<bool>(value, value.is_boolean(), "true or false");
}

void read(const json& value, std::int64_t& out) {
    const bool fits =
        value.is_number_integer() && (!value.is_number_unsigned() || value.get<std::uint64_t>() <= INT64_MAX);
    out = checked<std::int64_t>(value, fits, "a whole number");
}

void read(const json& value, double& out) {
    out = checked<double>(value, value.is_number(), "a number");
}

void read(const json& value, QString& out) {
    out = QString::fromStdString(checked<std::string>(value, value.is_string(), "a string"));
}

void read(const json& value, QByteArray& out) {
    out = QByteArray::fromStdString(checked<std::string>(value, value.is_string(), "a string"));
}

void read(const json& value, QStringList& out) {
    if (!value.is_array())
        throw std::invalid_argument("value must be an array of strings");
    for (const auto& item : value) {
        QString text;
        read(item, text);
        out << text;
    }
}

void read(const json& value, HotkeyBinding& out) {
    try {
        out = HotkeyBinding::decoded(QByteArray::fromStdString(value.dump()));
    } catch (const HotkeyBinding::DecodingError& error) {
        throw std::invalid_argument(error.what());
    }
}

template <typename T>
void read(const json& value, std::optional<T>& out) {
    out.reset();
    if (!value.is_null())
        read(value, out.emplace());
}

template <NamedCases Enum>
void read(const json& value, Enum& out) {
    QString raw;
    read(value, raw);
    const auto found = fromRawValue<Enum>(raw);
    if (!found)
        throw std::invalid_argument("unknown value " + raw.toStdString());
    out = *found;
}

template <typename T>
T valueOf(const json& value) {
    T out{};
    read(value, out);
    return out;
}

ordered_json write(bool value) {
    return value;
}

ordered_json write(std::int64_t value) {
    return value;
}

ordered_json write(double value) {
    return value;
}

ordered_json write(const QString& value) {
    return value.toStdString();
}

ordered_json write(const QByteArray& value) {
    return value.toStdString();
}

ordered_json write(const QStringList& value) {
    auto list = ordered_json::array();
    for (const auto& text : value)
        list.push_back(text.toStdString());
    return list;
}

ordered_json write(const HotkeyBinding& value) {
    return ordered_json::parse(value.encoded().toStdString());
}

template <typename T>
ordered_json write(const std::optional<T>& value) {
    return value ? write(*value) : ordered_json(nullptr);
}

template <NamedCases Enum>
ordered_json write(Enum value) {
    return write(rawValue(value));
}

const char* typeName(const PreferenceValue& value) {
    static constexpr std::array names{"bool", "int", "double", "string", "data", "strings"};
    return names.at(value.index());
}

} // namespace

ordered_json settingsToJson(AppSettings& settings) {
    auto all = ordered_json::object();
    settings.visit([&](const auto& setting) { all[setting.key().toStdString()] = write(setting.get()); });
    return all;
}

void assignSetting(AppSettings& settings, const QString& name, const json& value) {
    bool known = false;
    settings.visit([&](auto& setting) {
        if (setting.key() != name)
            return;
        known = true;
        setting.set(valueOf<typename std::decay_t<decltype(setting)>::Value>(value));
    });
    if (!known)
        throw std::invalid_argument("unknown property " + name.toStdString());
}

ordered_json preferenceToJson(const PreferenceValue& value) {
    return {{"type", typeName(value)},
            {"value", std::visit([](const auto& content) { return write(content); }, value)}};
}

PreferenceValue preferenceFromJson(const json& entry) {
    const auto type = entry.is_object() ? entry.value("type", json()) : json();
    if (!type.is_string() || !entry.contains("value"))
        throw std::invalid_argument("a stored value needs \"type\" and \"value\"");
    const auto& value = entry["value"];
    if (type == "bool")
        return valueOf<bool>(value);
    if (type == "int")
        return valueOf<std::int64_t>(value);
    if (type == "double")
        return valueOf<double>(value);
    if (type == "string")
        return valueOf<QString>(value);
    if (type == "data")
        return valueOf<QByteArray>(value);
    if (type == "strings")
        return valueOf<QStringList>(value);
    throw std::invalid_argument("unknown type " + type.get<std::string>());
}

} // namespace talvera::test
