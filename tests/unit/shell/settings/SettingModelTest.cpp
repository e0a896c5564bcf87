// SPDX-License-Identifier: MIT
#include "shell/settings/SettingModel.h"

#include "InMemoryPreferenceStore.h"
#include "PrintQt.h"
#include "persistence/AppSettings.h"

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class SettingModelTest : public testing::Test {
protected:
    InMemoryPreferenceStore store;
    AppSettings settings{store};
};

/// The complaint about a view that assigns something else is expected.
class Silence {
public:
    Silence()
        : m_before(qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {})) {}
    ~Silence() { qInstallMessageHandler(m_before); }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    QtMessageHandler m_before;
};

TEST_F(SettingModelTest, truthValue_isReadAndAssigned) {
    SettingModel model(settings.aiCleanupEnabled);
    EXPECT_EQ(model.key(), "aiCleanupEnabled");
    EXPECT_EQ(model.value(), QVariant(false));
    EXPECT_TRUE(model.setProperty("value", true)); // as a view does
    EXPECT_TRUE(settings.aiCleanupEnabled.get());
    EXPECT_EQ(store.boolean("aiCleanupEnabled"), true);
}

TEST_F(SettingModelTest, everyAssignment_isToldWhoeverMakesIt) {
    SettingModel model(settings.startSoundName);
    int told = 0;
    QObject::connect(&model, &SettingModel::valueChanged, [&] { ++told; });
    settings.startSoundName.set("Ping");
    EXPECT_EQ(model.value(), QVariant("Ping"));
    model.setValue("Off");
    EXPECT_EQ(told, 2);
    EXPECT_EQ(settings.startSoundName.get(), "Off");
}

TEST_F(SettingModelTest, number_takesWholeOnesToo) {
    SettingModel model(settings.typewriterThresholdSeconds);
    model.setValue(20);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 20.0);
    model.setValue(7.5);
    EXPECT_EQ(model.value(), QVariant(7.5));
}

TEST_F(SettingModelTest, enumeration_goesByItsStoredNames) {
    SettingModel model(settings.cleanupTone);
    EXPECT_EQ(model.value(), QVariant("conversational"));
    model.setValue("casual");
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Casual);
}

TEST_F(SettingModelTest, whatIsNoValueOfTheSetting_changesNothing) {
    const Silence silence;
    SettingModel cleanup(settings.aiCleanupEnabled);
    SettingModel tone(settings.cleanupTone);
    SettingModel sound(settings.startSoundName);
    SettingModel threshold(settings.typewriterThresholdSeconds);
    cleanup.setValue("yes");
    cleanup.setValue(1);
    tone.setValue("formal");
    tone.setValue(2);
    sound.setValue(QVariant());
    threshold.setValue("20");
    EXPECT_FALSE(settings.aiCleanupEnabled.get());
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Conversational);
    EXPECT_EQ(settings.startSoundName.get(), "Submarine");
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 15.0);
}

TEST_F(SettingModelTest, modelThatIsGone_hearsNothing) {
    { SettingModel model(settings.aiCleanupEnabled); }
    settings.aiCleanupEnabled.set(true);
}

} // namespace
