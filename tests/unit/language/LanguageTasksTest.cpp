// SPDX-License-Identifier: MIT
#include "language/AICleanup.h"
#include "language/CleanupTone.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

const QSet<QString> supported{QStringLiteral("en"), QStringLiteral("zh"), QStringLiteral("-")};

TEST(CleanupTone, rawValues_areStoredInThisOrder) {
    QStringList raws;
    for (const auto tone : allCleanupTones)
        raws << rawValue(tone);
    EXPECT_EQ(raws.join(u' ').toStdString(), "off conversational casual professional");
}

TEST(CleanupTone, fromRawValue_takesExactStringsOnly) {
    for (const auto tone : allCleanupTones)
        EXPECT_EQ(cleanupToneFromRawValue(rawValue(tone)), tone);
    EXPECT_EQ(cleanupToneFromRawValue(QStringLiteral("Casual")), std::nullopt);
    EXPECT_EQ(cleanupToneFromRawValue(QStringLiteral("formal")), std::nullopt);
    EXPECT_EQ(cleanupToneFromRawValue(QString()), std::nullopt);
}

TEST(AIAvailabilityState, caseNames_leadBackToTheState) {
    QStringList names;
    for (const auto state : allAIAvailabilityStates) {
        names << caseName(state);
        EXPECT_EQ(aiAvailabilityStateFromCaseName(caseName(state)), state);
    }
    EXPECT_EQ(names.join(u' ').toStdString(),
              "available intelligenceOff deviceNotEligible modelNotReady unsupportedOS");
    EXPECT_EQ(aiAvailabilityStateFromCaseName(QStringLiteral("unsupportedos")), std::nullopt);
}

TEST(AICleanup, isSourceSupported_asksForTheLanguageWithoutItsRegion) {
    EXPECT_TRUE(
        AICleanup::isSourceSupported(QStringLiteral("zh-CN"), AIAvailabilityState::Available, supported));
    EXPECT_FALSE(
        AICleanup::isSourceSupported(QStringLiteral("de"), AIAvailabilityState::Available, supported));
}

TEST(AICleanup, isSourceSupported_skipsEmptyPieces) {
    EXPECT_TRUE(
        AICleanup::isSourceSupported(QStringLiteral("-en"), AIAvailabilityState::Available, supported));
}

TEST(AICleanup, isSourceSupportedOfNoPieceAtAll_asksForTheCodeItself) {
    EXPECT_TRUE(AICleanup::isSourceSupported(QStringLiteral("-"), AIAvailabilityState::Available, supported));
    EXPECT_FALSE(
        AICleanup::isSourceSupported(QStringLiteral("--"), AIAvailabilityState::Available, supported));
    EXPECT_FALSE(AICleanup::isSourceSupported(QString(), AIAvailabilityState::Available, supported));
}

TEST(AICleanup, isSourceSupportedWithTheModelOff_isFalse) {
    EXPECT_FALSE(
        AICleanup::isSourceSupported(QStringLiteral("en"), AIAvailabilityState::IntelligenceOff, supported));
}

} // namespace
