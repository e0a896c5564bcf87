// SPDX-License-Identifier: MIT
// The catalogs that users get, each as it is.
#include "PrintQt.h"
#include "ShippedCatalogs.h"
#include "delivery/FocusNotice.h"
#include "language/AppLanguage.h"
#include "shell/hud/FocusNoticeText.h"
#include "shell/hud/HUDTexts.h"
#include "shell/panel/durationText.h"
#include "shell/texts/PluralForms.h"
#include "text/Localization.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <string>

using namespace talvera;
using test::shippedTexts;

namespace {

QStringList placeholdersOf(const QString& text) {
    static const QRegularExpression placeholder(QStringLiteral("%(?:@|lld|d|\\.0f|%)"));
    QStringList found;
    for (auto match = placeholder.globalMatch(text); match.hasNext();)
        found << match.next().captured();
    return found;
}

class Catalogs : public testing::TestWithParam<std::string> {
protected:
    Catalogs() { QCoreApplication::installTranslator(&catalog); }

    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QString code = QString::fromStdString(GetParam());
    TextCatalog::Texts texts = shippedTexts(code);
    TextCatalog catalog{texts, code};
};

TEST_P(Catalogs, language_isOneThatCanBeChosen) {
    EXPECT_FALSE(texts.isEmpty());
    EXPECT_EQ(AppLanguage::byCode(code).code, code);
}

TEST(OurLanguages, each_hasACatalog) {
    for (const auto& language : AppLanguage::all()) {
        if (language.code != u"system") {
            EXPECT_FALSE(shippedTexts(language.code).isEmpty()) << language.code.toStdString();
        }
    }
}

TEST_P(Catalogs, everyNumber_hasAForm) {
    const PluralForms forms(code);
    for (const QByteArray key : {"menu.readiness.title.multi", "menu.stats.dictations"}) {
        for (const int number :
             {0, 1, 2, 3, 4, 5, 9, 10, 11, 12, 14, 19, 20, 21, 22, 25, 100, 101, 111, 112, 1002}) {
            const auto form = forms.formOf(number);
            const auto text = texts.value(form == "other" ? key : key + "." + form);
            ASSERT_FALSE(text.isEmpty()) << key.constData() << " lacks the form for " << number;
            const auto shown = counted(key.constData(), "", number);
            EXPECT_EQ(shown, formatted(text, number));
            EXPECT_FALSE(shown.contains(u'%')) << shown.toStdString();
        }
    }
}

TEST_P(Catalogs, everyPlaceholder_isThatOfTheOtherCatalogs) {
    const auto others = shippedTexts(code == u"de" ? QStringLiteral("fr") : QStringLiteral("de"));
    for (auto entry = others.begin(); entry != others.end(); ++entry) {
        if (const auto text = texts.value(entry.key()); !text.isEmpty() && !entry.key().endsWith(".one")) {
            EXPECT_EQ(placeholdersOf(text), placeholdersOf(entry.value())) << entry.key().constData();
        }
    }
}

TEST_P(Catalogs, texts_areCleanlyTyped) {
    static const QRegularExpression untidy(QStringLiteral("\\.\\.\\.|[\"'`]|  (?!·)(?<!·  )| [,.;]|\\t|\\n"));
    for (auto entry = texts.begin(); entry != texts.end(); ++entry) {
        if (entry.key().endsWith(".sample")) // quotes commands and programs
            continue;
        EXPECT_FALSE(entry.value().contains(untidy))
            << entry.key().constData() << ": " << entry.value().toStdString();
    }
}

TEST_P(Catalogs, namesAndDurations_standInTheirTexts) {
    using Kind = FocusNotice::Kind;
    for (const auto kind : {Kind::PastedIn, Kind::ClipboardOriginalGone, Kind::ClipboardReactivateFailed}) {
        const auto text = focusNoticeText({kind, "Kate"}).text;
        EXPECT_TRUE(text.contains("Kate")) << text.toStdString();
        EXPECT_FALSE(text.contains(u'%')) << text.toStdString();
    }
    EXPECT_EQ(hudLine(DictationHUDState::Translating{"German"}, false),
              formatted(texts.value("hud.translating"), texts.value("language.de")));
    EXPECT_EQ(hudLine(DictationHUDState::Translating{"cleanup"}, false), texts.value("hud.cleanup"));
    EXPECT_TRUE(durationText(45).contains("45"));
    EXPECT_TRUE(durationText(120).contains(u'2'));
    const auto hours = durationText(3 * 3600 + 7 * 60);
    EXPECT_TRUE(hours.contains(u'3') && hours.contains(u'7') && !hours.contains(u'%')) << hours.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Our, Catalogs, testing::ValuesIn(test::shippedTranslations()), test::languageOfTest);

} // namespace
