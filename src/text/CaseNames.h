// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace talvera {

/// A case of an enumeration and its name, as it is persisted or told.
template <typename Enum>
struct CaseName {
    Enum value;
    const char* name;
};

/// All cases of an enumeration, each with its name.
template <typename Enum, std::size_t count>
using CaseNames = std::array<CaseName<Enum>, count>;

/// The name of `value`, which has to be among them.
template <typename Enum, std::size_t count>
QString nameOf(Enum value, const CaseNames<Enum, count>& cases) {
    for (const auto& each : cases) {
        if (each.value == value)
            return QString::fromLatin1(each.name);
    }
    Q_UNREACHABLE();
}

/// The case whose name is exactly `name`, if there is one.
template <typename Enum, std::size_t count>
std::optional<Enum> caseNamed(const QString& name, const CaseNames<Enum, count>& cases) {
    for (const auto& each : cases) {
        if (name == QLatin1String(each.name))
            return each.value;
    }
    return std::nullopt;
}

} // namespace talvera
