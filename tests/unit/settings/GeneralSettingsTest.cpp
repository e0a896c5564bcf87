// SPDX-License-Identifier: MIT
#include "shell/settings/GeneralSettings.h"
#include "SettingsFixture.h"

#include <cerrno>

using namespace talvera;
using namespace talvera::test;

namespace {

class GeneralSettingsTest : public SettingsFixture {
protected:
    GeneralSettings general{modelParts.general};
};

TEST_F(GeneralSettingsTest, displayLanguages_nameThemselves) {
    const auto& row = *general.displayLanguage();
    EXPECT_EQ(row.options().size(), 12);
    EXPECT_EQ(row.options().value(0), "Follow system");
    EXPECT_EQ(row.options().value(5), "Українська");
    EXPECT_EQ(row.currentText(), "Follow system");
}

TEST_F(GeneralSettingsTest, otherDisplayLanguage_asksForARestartUntilItIsChangedBack) {
    int told = 0;
    QObject::connect(&general, &GeneralSettings::languageChanged, [&] { ++told; });
    EXPECT_FALSE(general.asksToRelaunch());
    choose(*general.displayLanguage(), "Deutsch");
    EXPECT_EQ(settings.appLanguage.get(), "de");
    EXPECT_TRUE(general.asksToRelaunch());
    choose(*general.displayLanguage(), "English");
    EXPECT_FALSE(general.asksToRelaunch());
    choose(*general.displayLanguage(), "Deutsch");
    choose(*general.displayLanguage(), "Follow system");
    EXPECT_FALSE(general.asksToRelaunch());
    EXPECT_EQ(told, 4);
    general.relaunch();
    EXPECT_EQ(done, QStringList{"relaunch"});
}

TEST_F(GeneralSettingsTest, displayLanguageThatIsSpokenAlready_needsNoRestart) {
    for (const auto* const begunWith : {"de", "system"}) {
        const InterfaceLanguage german{{files, directories, console, fonts}, begunWith, {"de-AT", "en"}};
        auto parts = modelParts.general;
        GeneralSettings speaksGerman({.settings = parts.settings,
                                      .language = german,
                                      .loginItem = parts.loginItem,
                                      .sounds = parts.sounds,
                                      .relaunch = parts.relaunch});
        for (const auto* const chosen : {"Deutsch", "Follow system"}) {
            choose(*speaksGerman.displayLanguage(), "English");
            EXPECT_TRUE(speaksGerman.asksToRelaunch());
            choose(*speaksGerman.displayLanguage(), chosen);
            EXPECT_FALSE(speaksGerman.asksToRelaunch()) << begunWith << ", " << chosen;
        }
    }
}

TEST_F(GeneralSettingsTest, languageWithoutACatalog_isNoReasonToRestart) {
    choose(*general.displayLanguage(), "日本語");
    EXPECT_FALSE(general.asksToRelaunch());
}

TEST_F(GeneralSettingsTest, unknownDisplayLanguage_isShownAsTheSystems) {
    settings.appLanguage.set("tlh");
    EXPECT_EQ(general.displayLanguage()->currentText(), "Follow system");
}

TEST_F(GeneralSettingsTest, launchAtLogin_isWhatTheSessionSays) {
    auto& row = *general.launchAtLogin();
    EXPECT_FALSE(row.isOn());
    row.set(true);
    EXPECT_TRUE(loginItem.registered);
    EXPECT_TRUE(row.isOn());
    row.set(false);
    EXPECT_FALSE(loginItem.registered);
    EXPECT_FALSE(row.isOn());
    loginItem.registered = true; // by the desktop's own settings
    EXPECT_FALSE(row.isOn());
    general.appear();
    EXPECT_TRUE(row.isOn());
}

TEST_F(GeneralSettingsTest, launchAtLoginThatFails_snapsBackAndSaysWhy) {
    auto& row = *general.launchAtLogin();
    loginItem.fails = true;
    row.set(true);
    EXPECT_FALSE(row.isOn());
    EXPECT_EQ(row.problem(),
              "This couldn't be changed: the folder with your autostart entries can't be written to.");
    loginItem.fails = false;
    row.set(true);
    EXPECT_TRUE(row.isOn());
    EXPECT_EQ(row.problem(), "");
}

TEST_F(GeneralSettingsTest, problemOfTheLastVisit_isNotShownAgain) {
    loginItem.fails = true;
    general.launchAtLogin()->set(true);
    general.appear();
    EXPECT_EQ(general.launchAtLogin()->problem(), "");
}

TEST_F(GeneralSettingsTest, icon_isTheSetting) {
    general.showMenuBarIcon()->set(false);
    EXPECT_FALSE(settings.showMenuBarIcon.get());
}

TEST_F(GeneralSettingsTest, chosenSound_isAssignedAndThenPlayed) {
    choose(*general.startSound(), "Ping");
    EXPECT_EQ(played, QStringList{"Ping while Ping is set"});
    choose(*general.startSound(), "Ping"); // once more, to hear it again
    EXPECT_EQ(played.size(), 2);
}

TEST_F(GeneralSettingsTest, soundThatIsOff_isSilent) {
    EXPECT_EQ(general.startSound()->options().size(), 15);
    choose(*general.startSound(), "Off");
    EXPECT_EQ(settings.startSoundName.get(), "Off");
    EXPECT_TRUE(played.isEmpty());
}

TEST_F(GeneralSettingsTest, unknownSound_isShownAsSubmarineAndStaysStored) {
    settings.startSoundName.set("Gong");
    EXPECT_EQ(general.startSound()->currentText(), "Submarine");
    EXPECT_EQ(settings.startSoundName.get(), "Gong");
}

TEST_F(GeneralSettingsTest, threshold_isThereWhileRecordingsAreTyped) {
    auto& threshold = *general.typewriterThreshold();
    int told = 0;
    QObject::connect(&threshold, &SettingsRow::changed, [&] { ++told; });
    EXPECT_TRUE(threshold.isShown());
    EXPECT_EQ(threshold.valueText(), "15 seconds");
    general.typewriter()->set(false);
    EXPECT_EQ(settings.insertionMode.get(), InsertionMode::Paste);
    EXPECT_FALSE(threshold.isShown());
    EXPECT_EQ(told, 1);
    general.typewriter()->set(true);
    EXPECT_TRUE(threshold.isShown());
    EXPECT_EQ(threshold.from(), 1);
    EXPECT_EQ(threshold.to(), 60);
    threshold.setValue(30);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 30);
}

TEST_F(GeneralSettingsTest, protectionMode_isThereWhileTheFocusIsProtected) {
    auto& mode = *general.protectionMode();
    EXPECT_TRUE(mode.isShown());
    EXPECT_EQ(mode.options(), QStringList({"Try to reactivate original app", "Always copy to clipboard"}));
    choose(mode, "Always copy to clipboard");
    EXPECT_EQ(settings.focusProtectionMode.get(), FocusProtectionMode::ClipboardOnly);
    general.protectFocus()->set(false);
    EXPECT_FALSE(settings.protectFocusTarget.get());
    EXPECT_FALSE(mode.isShown());
}

} // namespace
