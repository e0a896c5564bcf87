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

TEST_F(CleanupSettingsTest, withoutAModel_thereIsNothingToChooseFrom) {
    setModelState(Reason::IntelligenceOff);
    EXPECT_FALSE(section.models()->isShown());
    EXPECT_FALSE(section.offersToAddModel()) << "the card leads there";
    setModelState(Reason::DeviceNotEligible);
    EXPECT_FALSE(section.models()->isShown());
    EXPECT_FALSE(section.offersToAddModel());
}

TEST_F(CleanupSettingsTest, onlyModel_isUsedWithoutAChoice) {
    setModels({{"a.gguf", "Alpha"}});
    setModelState(std::nullopt);
    EXPECT_TRUE(section.models()->isShown());
    EXPECT_EQ(section.models()->options(), QStringList{"Alpha"});
    EXPECT_EQ(section.models()->currentText(), "Alpha");
    EXPECT_TRUE(section.offersToAddModel());
    section.openModelSettings();
    EXPECT_EQ(done, QStringList{"model"});
}

TEST_F(CleanupSettingsTest, ofSeveralModels_noneIsUsedUntilOneIsChosen) {
    int told = 0;
    QObject::connect(section.models(), &ChoiceRow::changed, [&] { ++told; });
    setModels({{"a.gguf", "Alpha"}, {"b.gguf", "Beta"}});
    setModelState(Reason::IntelligenceOff);
    EXPECT_GE(told, 1);
    EXPECT_EQ(section.models()->options(), QStringList({"None", "Alpha", "Beta"}));
    EXPECT_EQ(section.models()->currentText(), "None");
    EXPECT_FALSE(section.offersToAddModel()) << "the card leads there";
    choose(*section.models(), "Beta");
    EXPECT_EQ(languageModelChoice.choice, "b.gguf");
    EXPECT_EQ(section.models()->currentText(), "Beta");
    choose(*section.models(), "None");
    EXPECT_EQ(languageModelChoice.choice, "");
    EXPECT_EQ(section.models()->currentText(), "None");
    setModelState(Reason::DeviceNotEligible); // the monitor rests then
}

TEST_F(CleanupSettingsTest, chosenModelThatIsGone_isSaidToBeUntilItIsBack) {
    setModels({{"a.gguf", "Alpha"}, {"b.gguf", "Beta"}});
    choose(*section.models(), "Beta");
    setModels({{"a.gguf", "Alpha"}});
    EXPECT_EQ(section.models()->options(), QStringList({"b.gguf – not found", "Alpha"}));
    EXPECT_EQ(section.models()->currentText(), "b.gguf – not found");
    setModels({});
    EXPECT_TRUE(section.models()->isShown());
    EXPECT_EQ(section.models()->options(), QStringList({"None", "b.gguf – not found"}));
    EXPECT_EQ(section.models()->currentText(), "b.gguf – not found");
    setModels({{"b.gguf", "Beta"}});
    EXPECT_EQ(section.models()->currentText(), "Beta");
}

TEST_F(CleanupSettingsTest, chosenModelThatIsGone_isNotSaidToBeOffAndCanBeReplaced) {
    setModels({{"a.gguf", "Alpha"}, {"b.gguf", "Beta"}});
    choose(*section.models(), "Beta");
    setModelState(Reason::IntelligenceOff);
    setModels({});
    EXPECT_TRUE(section.modelText().contains("can't be found"));
    EXPECT_FALSE(section.isModelAvailable());
    EXPECT_EQ(section.openModelSettingsText(), "") << "the row below leads there";
    EXPECT_TRUE(section.offersToAddModel());
    setModels({{"a.gguf", "Alpha"}, {"c.gguf", "Gamma"}});
    choose(*section.models(), "None");
    EXPECT_TRUE(section.modelText().contains("is off"));
    setModelState(Reason::DeviceNotEligible);
    languageModelChoice.choice = "b.gguf";
    EXPECT_TRUE(section.modelText().contains("isn't available")) << "to bring it back would not help";
}

TEST_F(CleanupSettingsTest, modelsOfOneName_areToldApart) {
    setModels({{"a.gguf", "Alpha"}, {"b.gguf", "Alpha"}, {"c.gguf", "Gamma"}});
    EXPECT_EQ(section.models()->options(),
              QStringList({"None", "Alpha (a.gguf)", "Alpha (b.gguf)", "Gamma"}));
}

TEST_F(CleanupSettingsTest, sectionThatComesIntoView_looksWhichModelsThereAre) {
    languageModelChoice.models = {{"a.gguf", "Alpha"}};
    EXPECT_EQ(section.models()->options(), QStringList{"None"});
    section.appear();
    EXPECT_EQ(languageModelChoice.looks, 1);
    EXPECT_EQ(section.models()->options(), QStringList{"Alpha"});
}

} // namespace
