// SPDX-License-Identifier: MIT
#include "text/CaseNames.h"
#include "PrintQt.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

enum class Fruit { Apple, Pear };
enum class Nameless { One };

} // namespace

template <>
inline constexpr std::array talvera::caseNames<Fruit>{CaseName{Fruit::Pear, "pear"},
                                                      CaseName{Fruit::Apple, "apple"}};

namespace {

TEST(CaseNames, rawValue_isTheNameInTheTable) {
    EXPECT_EQ(rawValue(Fruit::Apple), "apple");
    EXPECT_EQ(rawValue(Fruit::Pear), "pear");
}

TEST(CaseNames, fromRawValue_takesExactNamesOnly) {
    EXPECT_EQ(fromRawValue<Fruit>("pear"), Fruit::Pear);
    for (const auto* other : {"Pear", "pears", "pea", " pear", ""})
        EXPECT_EQ(fromRawValue<Fruit>(other), std::nullopt) << other;
}

TEST(CaseNames, allCases_keepTheOrderOfTheTable) {
    EXPECT_EQ(allCases<Fruit>(), (std::array{Fruit::Pear, Fruit::Apple}));
}

TEST(CaseNames, enumerationWithoutATable_isNone) {
    EXPECT_TRUE(NamedCases<Fruit>);
    EXPECT_FALSE(NamedCases<Nameless>);
}

} // namespace
