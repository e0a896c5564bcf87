// SPDX-License-Identifier: MIT
#include "shell/settings/SettingsModel.h"
#include "SettingsFixture.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class SettingsModelTest : public SettingsFixture {
protected:
    SettingsModel model{modelParts};
};

TEST_F(SettingsModelTest, sections_areFiveInTheirOrder) {
    QStringList titles;
    for (const auto& each : model.sections()) {
        const auto section = each.value<SettingsSection>();
        titles << section.id + u'|' + section.title + u'|' + section.subtitle;
        EXPECT_NE(section.icon, "");
    }
    EXPECT_EQ(titles, QStringList({"general|General|Core behavior and startup options.",
                                   "hotkey|Hotkey|Press and hold to record. Release to transcribe and paste.",
                                   "language|Language|What language you're speaking, and how to output it.",
                                   "ai|AI cleanup|Make transcripts send-ready automatically.",
                                   "privacy|Privacy|What leaves your Mac (spoiler: nothing)."}));
}

TEST_F(SettingsModelTest, sectionInView_beginsWithTheFirst) {
    EXPECT_EQ(model.section(), "general");
    EXPECT_EQ(model.sectionTitle(), "General");
    EXPECT_FALSE(model.showsAbout());
}

TEST_F(SettingsModelTest, selectedSection_comesIntoView) {
    int told = 0;
    QObject::connect(&model, &SettingsModel::sectionChanged, [&] { ++told; });
    model.select("language");
    EXPECT_EQ(model.section(), "language");
    EXPECT_EQ(model.sectionSubtitle(), "What language you're speaking, and how to output it.");
    model.select("language");
    model.select("no such section");
    EXPECT_EQ(model.section(), "language");
    EXPECT_EQ(told, 1);
    model.selectAbout();
    EXPECT_TRUE(model.showsAbout());
    EXPECT_EQ(model.section(), "");
    EXPECT_EQ(model.sectionTitle(), "About Talvera");
    model.select("general");
    EXPECT_FALSE(model.showsAbout());
}

TEST_F(SettingsModelTest, sectionThatGoes_endsItsRecording) {
    model.select("hotkey");
    model.hotkey()->recordCustom();
    model.select("language");
    EXPECT_FALSE(hotkeyRecorder.isRecording());
    model.language()->toggle()->record();
    model.selectAbout();
    EXPECT_FALSE(toggleRecorder.isRecording());
    EXPECT_FALSE(suspendHotkey.get());
}

TEST_F(SettingsModelTest, privacy_claimsThreeThings) {
    EXPECT_EQ(model.privacyClaims().size(), 3);
}

} // namespace
