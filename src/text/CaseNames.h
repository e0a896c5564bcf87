// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <optional>

namespace talvera {

/// A case of an enumeration and its name, as it is persisted or told.
template <typename Enum>
struct CaseName {
    Enum value;
    const char* name;
};

/// All cases of an enumeration in their order, each with its name. An enumeration with names has a
/// specialisation beside it:
///
///     template <>
///     inline constexpr std::array caseNames<Fruit>{CaseName{Fruit::Apple, "apple"},
///                                                  CaseName{Fruit::Pear, "pear"}};
template <typename Enum>
inline constexpr std::array<CaseName<Enum>, 0> caseNames{};

/// An enumeration with a table of names.
template <typename Enum>
concept NamedCases = !caseNames<Enum>.empty();

/// All cases, in the order of the table.
template <NamedCases Enum>
constexpr auto allCases() {
    std::array<Enum, caseNames<Enum>.size()> cases{};
    for (std::size_t i = 0; i < cases.size(); ++i)
        cases[i] = caseNames<Enum>[i].value;
    return cases;
}

/// The name of `value`, which has to be in the table.
template <NamedCases Enum>
QString rawValue(Enum value) {
    for (const auto& each : caseNames<Enum>) {
        if (each.value == value)
            return QString::fromLatin1(each.name);
    }
    Q_UNREACHABLE();
}

/// The case whose name is exactly `raw`, if there is one.
template <NamedCases Enum>
std::optional<Enum> fromRawValue(const QString& raw) {
    for (const auto& each : caseNames<Enum>) {
        if (raw == QLatin1String(each.name))
            return each.value;
    }
    return std::nullopt;
}

} // namespace talvera
