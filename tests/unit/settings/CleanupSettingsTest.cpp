// SPDX-License-Identifier: MIT
#include "shell/settings/CleanupSettings.h"
#include "SettingsFixture.h"

using namespace talvera;
using namespace talvera::test;
using Reason = LanguageModel::UnavailableReason;

namespace {

class CleanupSettingsTest : public SettingsFixture {
protected:
    CleanupSettings section{modelParts.cleanup};
};

TEST_F(CleanupSettingsTest, tone_isTheSetting) {
    EXPECT_EQ(section.tone()->options(), QStringList({"Off", "Conversational", "Casual", "Professional"}));
    EXPECT_EQ(section.tone()->currentText(), "Conversational");
    choose(*section.tone(), "Professional");
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Professional);
    choose(*section.tone(), "Off");
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Off);
}

TEST_F(CleanupSettingsTest, card_tellsTheStateOfTheLanguageModel) {
    int told = 0;
    QObject::connect(&section, &CleanupSettings::modelChanged, [&] { ++told; });
    setModelState(std::nullopt);
    EXPECT_TRUE(section.isModelAvailable());
    EXPECT_TRUE(section.modelText().startsWith("Cleanup runs on-device"));
    EXPECT_EQ(section.openModelSettingsText(), "");
    setModelState(Reason::ModelNotReady);
    EXPECT_FALSE(section.isModelAvailable());
    EXPECT_TRUE(section.modelText().contains("still getting ready"));
    EXPECT_EQ(section.openModelSettingsText(), "");
    setModelState(Reason::DeviceNotEligible);
    EXPECT_TRUE(section.modelText().contains("isn't available"));
    EXPECT_EQ(told, 3);
    readiness.aiState.set(AIAvailabilityState::UnsupportedOS);
    EXPECT_TRUE(section.modelText().startsWith("Cleanup requires"));
}

TEST_F(CleanupSettingsTest, modelThatIsOff_hasAWayToItsSettings) {
    setModelState(Reason::IntelligenceOff);
    EXPECT_FALSE(section.isModelAvailable());
    EXPECT_TRUE(section.modelText().contains("is off"));
    EXPECT_EQ(section.openModelSettingsText(), "Open System Settings");
    section.openModelSettings();
    EXPECT_EQ(done, QStringList{"model"});
    setModelState(Reason::DeviceNotEligible); // the monitor rests then
}

} // namespace
