// SPDX-License-Identifier: MIT
#include "platform/system/PreferenceStore.h"

namespace talvera {

namespace {

template <typename T>
std::optional<T> valueOf(const std::optional<PreferenceValue>& value) {
    if (value && std::holds_alternative<T>(*value))
        return std::get<T>(*value);
    return std::nullopt;
}

} // namespace

std::optional<QString> PreferenceStore::string(const QString& key) const {
    return valueOf<QString>(object(key));
}

std::optional<QByteArray> PreferenceStore::data(const QString& key) const {
    return valueOf<QByteArray>(object(key));
}

std::optional<bool> PreferenceStore::asBool(const QString& key) const {
    const auto value = object(key);
    if (const auto truth = valueOf<bool>(value))
        return truth;
    if (const auto number = valueOf<std::int64_t>(value); number && (*number == 0 || *number == 1))
        return *number == 1;
    if (const auto number = valueOf<double>(value); number && (*number == 0.0 || *number == 1.0))
        return *number == 1.0;
    return std::nullopt;
}

bool PreferenceStore::boolean(const QString& key) const {
    if (const auto words = string(key)) {
        return QStringList{QStringLiteral("1"), QStringLiteral("true"), QStringLiteral("yes")}.contains(
            *words, Qt::CaseInsensitive);
    }
    return asDouble(key).value_or(0.0) != 0.0;
}

std::optional<double> PreferenceStore::asDouble(const QString& key) const {
    const auto value = object(key);
    if (const auto number = valueOf<double>(value))
        return number;
    if (const auto number = valueOf<std::int64_t>(value))
        return static_cast<double>(*number);
    if (const auto truth = valueOf<bool>(value))
        return *truth ? 1.0 : 0.0;
    return std::nullopt;
}

} // namespace talvera
