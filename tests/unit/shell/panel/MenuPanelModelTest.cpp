// SPDX-License-Identifier: MIT
#include "shell/panel/MenuPanelModel.h"

#include "PanelFixture.h"
#include "text/Localization.h"

using namespace talvera;
using namespace talvera::test;
using State = MenuBarController::State;

namespace {

class PanelModel : public PanelTest {
protected:
    /// The names of the rows for which `role` says yes.
    QStringList names(TargetLanguagePicker::Role role) {
        QStringList found;
        const auto& rows = *model.targetLanguages();
        for (int row = 0; row < rows.count(); ++row) {
            if (rows.data(rows.index(row), role).toBool())
                found << rows.data(rows.index(row), TargetLanguagePicker::DisplayName).toString();
        }
        return found;
    }
    QStringList details() {
        QStringList found;
        const auto& rows = *model.targetLanguages();
        for (int row = 0; row < rows.count(); ++row)
            found << rows.data(rows.index(row), TargetLanguagePicker::DetailText).toString();
        return found;
    }
    void makeModelAvailable(const QSet<QString>& languages) {
        languageModel.reason.reset();
        languageModel.languages = languages;
        readiness.refresh();
    }

    MenuPanelModel model{{menuBar, settings, stats, readiness, languageModel, layout}};
};

TEST_F(PanelModel, status_tellsTheState) {
    EXPECT_EQ(model.statusTitle(), "Talvera");
    EXPECT_EQ(model.statusSubtitle(), "Hold to dictate");
    EXPECT_EQ(model.statusKeyCap(), settings.hotkeyBinding.get().displayString(layout));
    EXPECT_EQ(model.orbLabel(), "Idle, ready to record");
    menuBar.state.set(State::Recording);
    EXPECT_EQ(model.state(), "recording");
    EXPECT_EQ(model.statusTitle(), "Listening…");
    EXPECT_EQ(model.statusKeyCap(), "");
    EXPECT_EQ(model.orbLabel(), "Recording");
    menuBar.state.set(State::Transcribing);
    EXPECT_EQ(model.statusTitle(), "Transcribing");
    EXPECT_EQ(model.orbLabel(), "Transcribing");
}

TEST_F(PanelModel, hotkeyIsTapped_subtitleSaysSo) {
    settings.hotkeyTapToToggle.set(true);
    EXPECT_EQ(model.statusSubtitle(), "Tap to dictate");
}

TEST_F(PanelModel, error_showsItsMessageOrThatSomethingWentWrong) {
    menuBar.showError("Transcription failed", seconds(4));
    EXPECT_EQ(model.statusTitle(), "Talvera");
    EXPECT_EQ(model.statusSubtitle(), "Transcription failed");
    EXPECT_EQ(model.orbLabel(), "Error");
    menuBar.lastErrorMessage.set(std::nullopt);
    EXPECT_EQ(model.statusSubtitle(), "Something went wrong");
    actor.runToRest(seconds(10));
}

TEST_F(PanelModel, stateChanges_areTold) {
    int told = 0;
    QObject::connect(&model, &MenuPanelModel::statusChanged, [&] { ++told; });
    menuBar.state.set(State::Recording);
    settings.hotkeyBinding.set(HotkeyBinding());
    EXPECT_EQ(told, 2);
}

TEST_F(PanelModel, nothingMissing_noBanner) {
    EXPECT_EQ(model.bannerTitle(), "");
}

TEST_F(PanelModel, missingPermissions_areCountedNamedAndFixed) {
    access.trusted = false;
    readiness.refresh();
    EXPECT_EQ(model.bannerTitle(), "Talvera isn't fully set up");
    EXPECT_TRUE(model.accessibilityMissing());
    EXPECT_FALSE(model.microphoneMissing());
    microphone.change(AuthorizationStatus::Denied);
    readiness.refresh();
    EXPECT_EQ(model.bannerTitle(), "2 things need your attention");
    model.fixMicrophone();
    model.fixAccessibility();
    EXPECT_EQ(settingsPanels.opened,
              (std::vector{SettingsPanels::Panel::Microphone, SettingsPanels::Panel::Accessibility}));
}

TEST_F(PanelModel, desktopWithoutSettings_isAdvisedInstead) {
    QStringList advice;
    settingsPanels.hasPanels = false;
    model.fixMicrophone(); // nobody listens
    model.onAdvice = [&](const QString& text) { advice << text; };
    access.trusted = false;
    model.fixMicrophone();
    model.fixAccessibility();
    EXPECT_EQ(advice,
              QStringList({"Plug in a microphone, or allow one in this desktop's sound settings",
                           "The window manager doesn't tell which window is active (or none is running)."}));
}

TEST_F(PanelModel, modelUnavailable_onlyTheRecognisersRowsAreEnabledAndNoneHasADetail) {
    EXPECT_EQ(names(TargetLanguagePicker::IsEnabled), QStringList({"Off (keep source language)", "English"}));
    EXPECT_EQ(model.targetLanguages()->count(), 18);
    EXPECT_EQ(details().join(""), "");
}

TEST_F(PanelModel, modelAvailable_whatItLacksIsNotInstalled) {
    makeModelAvailable({"de", "pt"});
    EXPECT_EQ(names(TargetLanguagePicker::IsEnabled),
              QStringList({"Off (keep source language)", "English", "German", "Portuguese (Brazil)"}));
    EXPECT_EQ(details().count("Not installed"), 14);
    EXPECT_TRUE(model.languageModelAvailable());
}

TEST_F(PanelModel, modelGoneSinceThePanelLooked_rowsCanNotBeChosen) {
    makeModelAvailable({"de"});
    languageModel.reason = LanguageModel::UnavailableReason::ModelNotReady; // not published yet
    EXPECT_EQ(names(TargetLanguagePicker::IsEnabled), QStringList({"Off (keep source language)", "English"}));
}

TEST_F(PanelModel, currentLanguage_isNamedWithoutItsRemark) {
    EXPECT_EQ(model.targetLanguages()->currentDisplay(), "Off");
    settings.targetLanguageCode.set("pt-BR");
    EXPECT_EQ(model.targetLanguages()->currentDisplay(), "Portuguese (Brazil)");
}

TEST_F(PanelModel, select_makesTheRowsLanguageTheTarget) {
    model.targetLanguages()->select(1);
    EXPECT_EQ(settings.targetLanguageCode.get(), "en");
    EXPECT_EQ(names(TargetLanguagePicker::IsSelected), QStringList("English"));
    EXPECT_EQ(model.targetLanguages()->selectedRow(), 1);
}

TEST_F(PanelModel, selectOfARowThatCanNotBeChosen_changesNothing) {
    for (const int row : {-1, 2, 17, 18})
        model.targetLanguages()->select(row);
    EXPECT_EQ(settings.targetLanguageCode.get(), "off");
}

TEST_F(PanelModel, search_findsPartsOfNamesInAnyCase) {
    auto& picker = *model.targetLanguages();
    picker.setSearch(" PORTU");
    EXPECT_EQ(picker.count(), 1);
    EXPECT_EQ(picker.selectedRow(), -1);
    picker.setSearch("xyz");
    EXPECT_EQ(picker.count(), 0);
    picker.setSearch("");
    EXPECT_EQ(picker.count(), 18);
}

TEST_F(PanelModel, search_offersFirstWhatBeginsWithIt) {
    auto& picker = *model.targetLanguages();
    picker.setSearch("ge"); // which is in the words of "Off" as well
    ASSERT_EQ(picker.count(), 2);
    EXPECT_EQ(picker.data(picker.index(0), TargetLanguagePicker::Code), "de");
    EXPECT_EQ(picker.data(picker.index(1), TargetLanguagePicker::Code), "off");
}

TEST_F(PanelModel, arrowKeys_skipRowsThatCanNotBeChosen) {
    makeModelAvailable({"de", "vi"});
    const auto& picker = *model.targetLanguages();
    EXPECT_EQ(picker.next(-1, 1), 0);
    EXPECT_EQ(picker.next(1, 1), 4);
    EXPECT_EQ(picker.next(4, 1), 17);
    EXPECT_EQ(picker.next(17, 1), 17);
    EXPECT_EQ(picker.next(17, -1), 4);
    EXPECT_EQ(picker.next(0, -1), 0);
}

TEST_F(PanelModel, toggleShortcut_isShownAsLongAsThereIsOne) {
    EXPECT_NE(model.toggleShortcut(), "");
    settings.translateToggleBinding.set(std::nullopt);
    EXPECT_EQ(model.toggleShortcut(), "");
}

TEST_F(PanelModel, cleanup_isTheSetting) {
    model.setAICleanupEnabled(true);
    EXPECT_TRUE(settings.aiCleanupEnabled.get());
    settings.aiCleanupEnabled.set(false);
    EXPECT_FALSE(model.aiCleanupEnabled());
}

TEST_F(PanelModel, statistics_areThoseOfTheWeek) {
    EXPECT_EQ(model.timeSaved(), "0s");
    EXPECT_EQ(model.dictations(), "0");
    dictate(80, 10);
    stats.refresh();
    EXPECT_EQ(model.timeSaved(), "1m");
    EXPECT_EQ(model.dictations(), "1");
}

TEST_F(PanelModel, rowsAtTheBottom_doWhatTheyAreTold) {
    QStringList done;
    model.onSettings = [&] { done << "settings"; };
    model.onCheckForUpdates = [&] { done << "updates"; };
    model.onQuit = [&] { done << "quit"; };
    model.openSettings();
    model.checkForUpdates();
    model.quit();
    model.openLanguageModelSettings(); // nobody listens
    EXPECT_EQ(done, QStringList({"settings", "updates", "quit"}));
}

TEST_F(PanelModel, texts_areTheDefaultsWithoutACatalog) {
    const auto texts = model.texts();
    EXPECT_EQ(texts["cleanupUsing"], "Using Apple Intelligence");
    EXPECT_EQ(texts["settings"], "Settings…");
    EXPECT_EQ(texts["settingsShortcut"], "⌘,");
    for (const auto& text : texts)
        EXPECT_FALSE(text.toString().isEmpty());
}

TEST(FormattedNumber, replacesTheFirstPlaceholderOnly) {
    EXPECT_EQ(formatted(QStringLiteral("%lld of %lld"), 3), "3 of %lld");
    EXPECT_EQ(formatted(QStringLiteral("none"), 3), "none");
}

} // namespace
