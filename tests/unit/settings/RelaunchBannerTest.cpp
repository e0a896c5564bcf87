// SPDX-License-Identifier: MIT
#include "shell/settings/relaunchBanner.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

TEST(RelaunchBanner, sameLanguage_needsNone) {
    EXPECT_FALSE(relaunchBanner("de", "de", "en"));
    EXPECT_FALSE(relaunchBanner("pt-BR", "pt-BR", "en"));
}

TEST(RelaunchBanner, otherLanguage_asksForIt) {
    EXPECT_TRUE(relaunchBanner("en", "de", "en"));
    EXPECT_TRUE(relaunchBanner("zh-Hans", "ja", "zh-Hans"));
}

TEST(RelaunchBanner, regionsOfOneLanguage_differUnlessOneNamesNone) {
    EXPECT_TRUE(relaunchBanner("pt-BR", "pt-PT", "en"));
    EXPECT_FALSE(relaunchBanner("pt", "pt-BR", "en"));
    EXPECT_FALSE(relaunchBanner("pt-BR", "pt", "en"));
    EXPECT_FALSE(relaunchBanner("zh-Hans-CN", "zh-Hans", "en"));
}

TEST(RelaunchBanner, system_goesByTheLanguageAlone) {
    EXPECT_FALSE(relaunchBanner("de", "system", "de-AT"));
    EXPECT_FALSE(relaunchBanner("pt-BR", "system", "pt-PT"));
    EXPECT_TRUE(relaunchBanner("de", "system", "en-US"));
    EXPECT_FALSE(relaunchBanner("de", "system", "de_AT"));
}

TEST(RelaunchBanner, whatIsMissing_isEnglish) {
    EXPECT_FALSE(relaunchBanner(std::nullopt, "en", std::nullopt));
    EXPECT_FALSE(relaunchBanner(std::nullopt, "system", std::nullopt));
    EXPECT_TRUE(relaunchBanner("de", "system", std::nullopt));
    EXPECT_TRUE(relaunchBanner(std::nullopt, "de", "de"));
    EXPECT_FALSE(relaunchBanner("en", "system", ""));
}

TEST(RelaunchBanner, nameWithoutALanguage_standsForItself) {
    EXPECT_TRUE(relaunchBanner("en", "-BR", "en"));
    EXPECT_FALSE(relaunchBanner("-BR", "-BR", "en"));
}

} // namespace
