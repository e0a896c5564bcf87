// SPDX-License-Identifier: MIT
#include "linux/xdg/sessionLanguages.h"

#include "PrintQt.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

using namespace talvera;

namespace {

QStringList languagesWith(std::initializer_list<std::pair<const char*, const char*>> variables) {
    QProcessEnvironment environment;
    for (const auto& [name, value] : variables)
        environment.insert(QLatin1String(name), QString::fromLatin1(value));
    return sessionLanguages(environment);
}

TEST(SessionLanguages, locale_isTheFirstOfThreeVariables) {
    EXPECT_EQ(languagesWith({{"LANG", "de_AT.UTF-8"}}), QStringList{"de-AT"});
    EXPECT_EQ(languagesWith({{"LANG", "de_AT"}, {"LC_MESSAGES", "pl_PL@euro"}}), QStringList{"pl-PL"});
    EXPECT_EQ(languagesWith({{"LC_MESSAGES", "pl_PL"}, {"LC_ALL", "ja_JP.UTF-8"}}), QStringList{"ja-JP"});
    EXPECT_EQ(languagesWith({{"LC_ALL", ""}, {"LANG", "uk_UA.UTF-8"}}), QStringList{"uk-UA"});
}

TEST(SessionLanguages, list_goesBeforeTheLocale) {
    EXPECT_EQ(languagesWith({{"LANG", "en_US.UTF-8"}, {"LANGUAGE", "pt_BR:pt:en"}}),
              (QStringList{"pt-BR", "pt", "en", "en-US"}));
    EXPECT_EQ(languagesWith({{"LANG", "de_DE"}, {"LANGUAGE", ":C:de_DE:"}}), QStringList{"de-DE"});
}

TEST(SessionLanguages, plainLocale_namesNone) {
    EXPECT_EQ(languagesWith({}), QStringList());
    EXPECT_EQ(languagesWith({{"LANGUAGE", "de"}}), QStringList());
    EXPECT_EQ(languagesWith({{"LANG", "C"}, {"LANGUAGE", "de"}}), QStringList());
    EXPECT_EQ(languagesWith({{"LC_ALL", "POSIX"}, {"LANG", "de_DE"}}), QStringList());
    EXPECT_EQ(languagesWith({{"LANG", "C.UTF-8"}}), QStringList());
    EXPECT_EQ(languagesWith({{"LANG", "C.UTF-8"}, {"LANGUAGE", "de"}}), QStringList{"de"});
}

} // namespace
