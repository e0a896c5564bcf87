// SPDX-License-Identifier: MIT
#include "shell/texts/PluralForms.h"

#include "shell/texts/TextCatalog.h"
#include "text/Localization.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

using namespace talvera;

namespace {

std::string formsOf(const QString& language, const std::vector<int>& numbers) {
    const PluralForms forms(language);
    std::string found;
    for (const int number : numbers)
        found += (found.empty() ? "" : " ") + forms.formOf(number).toStdString();
    return found;
}

TEST(PluralForms, languages_countEachInItsOwnWay) {
    const std::vector numbers{0, 1, 2, 4, 5, 11, 12, 21, 22, 25, 101, 111};
    EXPECT_EQ(formsOf("en", numbers),
              "other one other other other other other other other other other other");
    EXPECT_EQ(formsOf("de", numbers), formsOf("en", numbers));
    EXPECT_EQ(formsOf("ru", numbers), "many one few few many many many one few many one many");
    EXPECT_EQ(formsOf("uk", numbers), formsOf("ru", numbers));
    EXPECT_EQ(formsOf("pl", numbers), "many one few few many many many many few many many many");
    EXPECT_EQ(formsOf("ja", numbers),
              "other other other other other other other other other other other other");
    EXPECT_EQ(formsOf("zh-Hans", {1}), "other");
    EXPECT_EQ(formsOf("no such language!", {1}), "other");
}

class CountedTexts : public testing::Test {
protected:
    ~CountedTexts() override { QCoreApplication::removeTranslator(&catalog()); }

    TextCatalog& catalog() { return *m_catalog; }
    void speak(const QString& language, TextCatalog::Texts texts) {
        if (m_catalog)
            QCoreApplication::removeTranslator(m_catalog.get());
        m_catalog = std::make_unique<TextCatalog>(std::move(texts), language);
        QCoreApplication::installTranslator(m_catalog.get());
    }
    static QString things(std::int64_t number) {
        return counted("things", "%lld things need your attention", number);
    }

    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};

private:
    std::unique_ptr<TextCatalog> m_catalog;
};

TEST_F(CountedTexts, catalogWithForms_givesTheOneOfTheNumber) {
    speak("pl", {{"things.one", "%lld sprawa wymaga uwagi"},
                 {"things.few", "%lld sprawy wymagają uwagi"},
                 {"things.many", "%lld spraw wymaga uwagi"}});
    EXPECT_EQ(things(1), "1 sprawa wymaga uwagi");
    EXPECT_EQ(things(3), "3 sprawy wymagają uwagi");
    EXPECT_EQ(things(5), "5 spraw wymaga uwagi");
    EXPECT_EQ(things(1'000'002), "1000002 sprawy wymagają uwagi");
    EXPECT_EQ(things(std::numeric_limits<std::int64_t>::max()), "9223372036854775807 spraw wymaga uwagi");
}

TEST_F(CountedTexts, formThatACatalogLacks_isItsTextForAllNumbers) {
    speak("de", {{"things.one", "Eine Einstellung"}, {"things", "%lld Einstellungen"}});
    EXPECT_EQ(things(1), "Eine Einstellung");
    EXPECT_EQ(things(2), "2 Einstellungen");
    EXPECT_EQ(things(0), "0 Einstellungen");
}

TEST_F(CountedTexts, catalogThatLacksTheText_leavesTheDefault) {
    speak("ru", {});
    EXPECT_EQ(things(21), "21 things need your attention");
}

TEST_F(CountedTexts, textThatDoesNotCount_takesNoForm) {
    speak("en", {{"things.other", "counted"}, {"things", "plain"}});
    EXPECT_EQ(localized("things", "default"), "plain");
}

} // namespace
