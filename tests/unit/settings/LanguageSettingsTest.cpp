// SPDX-License-Identifier: MIT
#include "shell/settings/LanguageSettings.h"
#include "SettingsFixture.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class LanguageSettingsTest : public SettingsFixture {
protected:
    LanguageSettings section{settings, toggleRecorder};
};

TEST_F(LanguageSettingsTest, source_isOneOfTheRecognisers) {
    auto& row = *section.source();
    EXPECT_EQ(row.options().size(), 19);
    EXPECT_EQ(row.currentText(), "Auto detect");
    choose(row, "Ukrainian");
    EXPECT_EQ(settings.sourceLanguageCode.get(), "uk");
}

TEST_F(LanguageSettingsTest, unknownSource_isShownAsFoundOut) {
    settings.sourceLanguageCode.set("tlh");
    EXPECT_EQ(section.source()->currentText(), "Auto detect");
    EXPECT_EQ(settings.sourceLanguageCode.get(), "tlh");
}

TEST_F(LanguageSettingsTest, targetOfNoTranslation_isGoneAndComesBackAsTheLastOne) {
    settings.targetLanguageCode.set("fr");
    EXPECT_TRUE(section.translate()->isOn());
    EXPECT_TRUE(section.target()->isShown());
    EXPECT_EQ(section.target()->currentText(), "French");
    section.translate()->set(false);
    EXPECT_EQ(settings.targetLanguageCode.get(), "off");
    EXPECT_FALSE(section.target()->isShown());
    section.translate()->set(true);
    EXPECT_EQ(settings.targetLanguageCode.get(), "fr");
    EXPECT_TRUE(section.target()->isShown());
}

TEST_F(LanguageSettingsTest, translationThatIsOn_isNotAssignedAgain) {
    settings.targetLanguageCode.set("fr");
    settings.lastTargetLanguageCode.set("de");
    int assigned = 0;
    const auto counted = settings.targetLanguageCode.observe([&](const QString&) { ++assigned; });
    section.translate()->set(true);
    EXPECT_EQ(assigned, 0);
    EXPECT_EQ(settings.targetLanguageCode.get(), "fr");
}

TEST_F(LanguageSettingsTest, targets_areAllButOff) {
    auto& row = *section.target();
    EXPECT_EQ(row.options().size(), 17);
    EXPECT_FALSE(row.options().contains("Off (keep source language)"));
    choose(row, "Portuguese (Brazil)");
    EXPECT_EQ(settings.targetLanguageCode.get(), "pt-BR");
    EXPECT_EQ(settings.lastTargetLanguageCode.get(), "pt-BR");
}

TEST_F(LanguageSettingsTest, clear_endsARecordingAndLeavesNoShortcut) {
    EXPECT_TRUE(section.hasToggle());
    section.toggle()->record();
    EXPECT_TRUE(suspendHotkey.get());
    section.clearToggle();
    EXPECT_FALSE(section.toggle()->isRecording());
    EXPECT_FALSE(suspendHotkey.get());
    EXPECT_FALSE(section.hasToggle());
    EXPECT_EQ(section.toggle()->shortcut(), "");
    EXPECT_FALSE(AppSettings(store).translateToggleBinding.get().has_value()) << "after a restart";
}

} // namespace
