// SPDX-License-Identifier: MIT
#include "shell/hud/HUDTexts.h"

#include <gtest/gtest.h>

using namespace talvera;
using State = DictationHUDState;

namespace {

TEST(HUDTexts, eachState_hasItsLine) {
    EXPECT_EQ(hudLine(State::Hidden{}, false), "");
    EXPECT_EQ(hudLine(State::Listening{}, false), "Release to insert");
    EXPECT_EQ(hudLine(State::Transcribing{}, false), "Transcribing…");
    EXPECT_EQ(hudLine(State::Translating{"German"}, false), "Translating to German…");
    EXPECT_EQ(hudLine(State::Notice{"Nothing recognized", State::NoticeTone::Warn}, false),
              "Nothing recognized");
    EXPECT_EQ(hudLine(State::PermissionRequired{State::PermissionKind::Microphone}, false), "");
}

TEST(HUDTexts, keyThatIsNotHeld_isToBeTapped) {
    EXPECT_EQ(hudLine(State::Listening{}, true), "Tap again to insert");
    EXPECT_EQ(hudLine(State::Transcribing{}, true), "Transcribing…");
}

TEST(HUDTexts, cleanupAsATranslation_readsAsOne) {
    EXPECT_EQ(hudLine(State::Translating{"cleanup"}, false), "Translating to cleanup…");
}

TEST(HUDTexts, nameWithAPlaceholder_isTakenAsItStands) {
    EXPECT_EQ(hudLine(State::Translating{"%@ %s"}, false), "Translating to %@ %s…");
}

TEST(LanguageIndicator, targetOff_isNone) {
    EXPECT_EQ(languageIndicator("de", "off"), "");
}

TEST(LanguageIndicator, codes_areShortAndUpperCase) {
    EXPECT_EQ(languageIndicator("auto", "pt-BR"), "AUTO → PT");
    EXPECT_EQ(languageIndicator("zh-Hans", "en"), "ZH → EN");
    EXPECT_EQ(languageIndicator("de", "en-US"), "DE → EN");
}

TEST(RecordingTime, minutes_areNotWrappedIntoHours) {
    EXPECT_EQ(recordingTime(seconds(3725)), "62:05");
    EXPECT_EQ(recordingTime(seconds(6000)), "100:00");
}

TEST(RecordingTime, partsOfASecond_areCut) {
    EXPECT_EQ(recordingTime(seconds(7.999)), "00:07");
    EXPECT_EQ(recordingTime(seconds(59.5)), "00:59");
    EXPECT_EQ(recordingTime(seconds(60)), "01:00");
}

TEST(RecordingTime, clockSetBack_isZero) {
    EXPECT_EQ(recordingTime(seconds(-5)), "00:00");
    EXPECT_EQ(recordingTime(seconds(-0.5)), "00:00");
}

TEST(PermissionCard, eachKind_hasItsTitleAndSymbol) {
    const auto microphone = permissionCardTexts(State::PermissionKind::Microphone);
    EXPECT_EQ(microphone.title, "Microphone access needed");
    EXPECT_EQ(microphone.symbol, "mic.slash.fill");
    const auto accessibility = permissionCardTexts(State::PermissionKind::Accessibility);
    EXPECT_EQ(accessibility.title, "Accessibility access needed");
    EXPECT_EQ(accessibility.symbol, "cursorarrow.and.square.on.square.dashed");
    for (const auto& card : {microphone, accessibility}) {
        EXPECT_EQ(card.subtitle, "Tap to open System Settings and grant it");
        EXPECT_EQ(card.action, "Open Settings");
        EXPECT_EQ(card.dismiss, "Dismiss");
    }
}

} // namespace
