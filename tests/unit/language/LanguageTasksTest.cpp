// SPDX-License-Identifier: MIT
#include "language/AICleanup.h"
#include "language/CleanupTone.h"
#include "language/unavailableReason.h"

#include <gtest/gtest.h>

using namespace talvera;

namespace {

const QSet<QString> supported{QStringLiteral("en"), QStringLiteral("zh"), QStringLiteral("-")};

TEST(CleanupTone, rawValues_areStoredInThisOrder) {
    QStringList raws;
    for (const auto tone : allCases<CleanupTone>())
        raws << rawValue(tone);
    EXPECT_EQ(raws.join(u' ').toStdString(), "off conversational casual professional");
}

TEST(CleanupTone, fromRawValue_takesExactStringsOnly) {
    for (const auto tone : allCases<CleanupTone>())
        EXPECT_EQ(fromRawValue<CleanupTone>(rawValue(tone)), tone);
    EXPECT_EQ(fromRawValue<CleanupTone>(QStringLiteral("Casual")), std::nullopt);
    EXPECT_EQ(fromRawValue<CleanupTone>(QStringLiteral("formal")), std::nullopt);
    EXPECT_EQ(fromRawValue<CleanupTone>(QString()), std::nullopt);
}

TEST(AIAvailabilityState, names_leadBackToTheState) {
    QStringList names;
    for (const auto state : allCases<AIAvailabilityState>()) {
        names << rawValue(state);
        EXPECT_EQ(fromRawValue<AIAvailabilityState>(rawValue(state)), state);
    }
    EXPECT_EQ(names.join(u' ').toStdString(),
              "available intelligenceOff deviceNotEligible modelNotReady unsupportedOS");
    EXPECT_EQ(fromRawValue<AIAvailabilityState>(QStringLiteral("unsupportedos")), std::nullopt);
}

TEST(UnavailableReason, words_areFoundAnywhereInCapitalsOrNot) {
    using Reason = LanguageModel::UnavailableReason;
    EXPECT_EQ(unavailableReasonFromWords("unavailable(appleIntelligenceNotEnabled)"),
              Reason::IntelligenceOff);
    EXPECT_EQ(unavailableReasonFromWords("DeviceNotEligible"), Reason::DeviceNotEligible);
    EXPECT_EQ(unavailableReasonFromWords("modelnotready"), Reason::ModelNotReady);
}

TEST(UnavailableReason, wordsThatWeDontKnow_sayThatTheMachineCanNot) {
    using Reason = LanguageModel::UnavailableReason;
    EXPECT_EQ(unavailableReasonFromWords("something new"), Reason::DeviceNotEligible);
    EXPECT_EQ(unavailableReasonFromWords(QString()), Reason::DeviceNotEligible);
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
