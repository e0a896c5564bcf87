// SPDX-License-Identifier: MIT
#include "language/AppLanguage.h"
#include "language/Language.h"
#include "language/TargetLanguage.h"

#include <gtest/gtest.h>

#include <set>

using namespace talvera;

namespace {

QStringList codesOf(const auto& rows) {
    QStringList codes;
    for (const auto& row : rows)
        codes << row.code;
    return codes;
}

TEST(Language, all_is19RowsInDisplayOrder) {
    EXPECT_EQ(codesOf(Language::all()).join(u' ').toStdString(),
              "auto en ru uk es de fr it pt pl nl tr cs zh ja ko ar hi he");
    EXPECT_EQ(Language::all().front().displayName, u"Auto detect");
    EXPECT_EQ(Language::all().back().displayName, u"Hebrew");
}

TEST(TargetLanguage, all_is18RowsInDisplayOrder) {
    EXPECT_EQ(codesOf(TargetLanguage::all()).join(u' ').toStdString(),
              "off en es fr de it pt-BR nl pl da no sv tr zh-CN zh-TW ja ko vi");
    EXPECT_EQ(TargetLanguage::all().front().displayName, u"Off (keep source language)");
    EXPECT_EQ(TargetLanguage::byCode(QStringLiteral("zh-TW")).displayName, u"Chinese (Traditional)");
}

TEST(TargetLanguage, all_needsTheModelForEverythingButOffAndEnglish) {
    for (const auto& row : TargetLanguage::all())
        EXPECT_EQ(row.requiresAI, row.code != u"off" && row.code != u"en") << row.code.toStdString();
}

TEST(AppLanguage, all_is12RowsInDisplayOrderEachInItsOwnLanguage) {
    EXPECT_EQ(codesOf(AppLanguage::all()).join(u' ').toStdString(),
              "system en es fr ru uk ja de pl pt-BR pt-PT zh-Hans");
    QStringList names;
    for (const auto& row : AppLanguage::all())
        names << row.nativeName;
    EXPECT_EQ(names.join(u'|').toStdString(),
              "|English|Español|Français|Русский|Українська|日本語|Deutsch|Polski|Português (Brasil)"
              "|Português (Portugal)|简体中文");
}

TEST(TargetLanguage, byCodeOfOff_isTheOffRowAndNotTheFallback) {
    EXPECT_EQ(TargetLanguage::byCode(QStringLiteral("off")), TargetLanguage::all().front());
}

TEST(TargetLanguage, byCodeOfAnUnknownCode_isEnglishWithoutTheModel) {
    const TargetLanguage english{QStringLiteral("en"), QStringLiteral("English"), false};
    for (const auto* code : {u"xx", u"", u"EN", u"pt", u"auto", u"zh"})
        EXPECT_EQ(TargetLanguage::byCode(QString::fromUtf16(code)), english);
}

TEST(TargetLanguage, hash_goesOverAllFields) {
    const TargetLanguage row{QStringLiteral("a"), QStringLiteral("b"), false};
    EXPECT_EQ(qHash(row), qHash(TargetLanguage(row)));
    const std::set<size_t> hashes{qHash(row),
                                  qHash(TargetLanguage{QStringLiteral("a"), QStringLiteral("b"), true}),
                                  qHash(TargetLanguage{QStringLiteral("a"), QStringLiteral("c"), false}),
                                  qHash(TargetLanguage{QStringLiteral("c"), QStringLiteral("b"), false})};
    EXPECT_EQ(hashes.size(), 4U);
}

TEST(Language, byCodeOfATargetCode_isAutoDetect) {
    EXPECT_EQ(Language::byCode(QStringLiteral("pt-BR")).displayName, u"Auto detect");
    EXPECT_EQ(Language::byCode(QStringLiteral("off")).code, u"auto");
    EXPECT_EQ(Language::byCode(QStringLiteral("pt")).displayName, u"Portuguese");
}

TEST(AppLanguage, byCodeOfALanguageWithoutItsRegion_isSystem) {
    const auto row = AppLanguage::byCode(QStringLiteral("pt"));
    EXPECT_EQ(row.code, u"system");
    EXPECT_TRUE(row.nativeName.isEmpty());
}

TEST(TargetLanguage, bothChineseRows_areSelectableTogetherSinceBothReduceToZh) {
    const auto simplified = TargetLanguage::byCode(QStringLiteral("zh-CN"));
    const auto traditional = TargetLanguage::byCode(QStringLiteral("zh-TW"));
    for (const auto& supported : {QSet<QString>{QStringLiteral("zh")}, QSet<QString>{QStringLiteral("ja")},
                                  QSet<QString>{QStringLiteral("zh-CN")}}) {
        const bool expected = supported.contains(QStringLiteral("zh"));
        EXPECT_EQ(simplified.isSelectable(true, AIAvailabilityState::Available, supported), expected);
        EXPECT_EQ(traditional.isSelectable(true, AIAvailabilityState::Available, supported), expected);
    }
}

QStringList selectable(bool isAvailable, AIAvailabilityState state, const QSet<QString>& supported) {
    QStringList codes;
    for (const auto& row : TargetLanguage::all()) {
        if (row.isSelectable(isAvailable, state, supported))
            codes << row.code;
    }
    return codes;
}

const QSet<QString> everyLanguage{QStringLiteral("es"), QStringLiteral("fr"), QStringLiteral("de"),
                                  QStringLiteral("it"), QStringLiteral("pt"), QStringLiteral("nl"),
                                  QStringLiteral("pl"), QStringLiteral("da"), QStringLiteral("no"),
                                  QStringLiteral("sv"), QStringLiteral("tr"), QStringLiteral("zh"),
                                  QStringLiteral("ja"), QStringLiteral("ko"), QStringLiteral("vi")};

TEST(TargetLanguage, modelUnavailable_leavesOnlyOffAndEnglish) {
    const QStringList plain{QStringLiteral("off"), QStringLiteral("en")};
    EXPECT_EQ(selectable(false, AIAvailabilityState::DeviceNotEligible, everyLanguage), plain);
    EXPECT_EQ(selectable(false, AIAvailabilityState::Available, everyLanguage), plain);
}

TEST(TargetLanguage, modelGoneSinceLastAsked_leavesOnlyOffAndEnglish) {
    for (const auto state : allCases<AIAvailabilityState>()) {
        const auto rows = selectable(true, state, everyLanguage).size();
        EXPECT_EQ(rows, state == AIAvailabilityState::Available ? 18 : 2) << rawValue(state).toStdString();
    }
}

} // namespace
