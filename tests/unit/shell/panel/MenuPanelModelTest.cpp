// SPDX-License-Identifier: MIT
#include "shell/panel/MenuPanelModel.h"

#include "PanelFixture.h"
#include "text/Localization.h"

#include <QMetaProperty>

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

    MenuPanelModel model{{menuBar, settings, stats, readiness, languageModel, layout, toggle}};
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
    EXPECT_TRUE(model.isReady());
}

TEST_F(PanelModel, somethingMissing_isNotSaidToBeReady) {
    int told = 0;
    QObject::connect(&model, &MenuPanelModel::statusChanged, [&] { ++told; });
    access.trusted = false;
    readiness.refresh();
    EXPECT_FALSE(model.isReady());
    EXPECT_EQ(model.orbLabel(), "Not ready to record yet");
    EXPECT_EQ(told, 1);
}

TEST_F(PanelModel, fixOfAccessibility_saysWhatTheSessionLacksThoughTheDesktopHasAPage) {
    QStringList advice;
    model.onAdvice = [&](const QString& text) { advice << text; };
    access.trusted = false;
    access.lack = SessionLack::ActiveWindow;
    model.fixAccessibility();
    EXPECT_EQ(advice,
              QStringList("The window manager doesn't tell which window is active (or none is running). "
                          "Use another one."));
    EXPECT_TRUE(settingsPanels.opened.empty());
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
    EXPECT_EQ(
        advice,
        QStringList({"Plug in a microphone, or allow one in this desktop's sound settings",
                     "This desktop doesn't let Talvera watch keys and type. Allow it in its settings."}));
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
    EXPECT_EQ(model.languageModel().footer, "Add more languages in System Settings");
}

TEST_F(PanelModel, modelGoneSinceThePanelLooked_rowsCanNotBeChosen) {
    makeModelAvailable({"de"});
    languageModel.reason = LanguageModel::UnavailableReason::ModelNotReady; // not published yet
    EXPECT_EQ(names(TargetLanguagePicker::IsEnabled), QStringList({"Off (keep source language)", "English"}));
}

TEST_F(PanelModel, modelThatCameSinceThePanelLooked_isWaitedForUntilItIsTold) {
    languageModel.reason.reset();
    languageModel.languages = {"de"};
    EXPECT_EQ(names(TargetLanguagePicker::IsEnabled), QStringList({"Off (keep source language)", "English"}));
    EXPECT_EQ(details().join(""), "");
    readiness.refresh();
    EXPECT_EQ(names(TargetLanguagePicker::IsEnabled),
              QStringList({"Off (keep source language)", "English", "German"}));
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
    picker.setSearch("an");
    ASSERT_EQ(picker.count(), 7);
    EXPECT_EQ(picker.data(picker.index(0), TargetLanguagePicker::Code), "es");
    picker.setSearch("e");
    EXPECT_EQ(picker.data(picker.index(0), TargetLanguagePicker::Code), "en");
}

TEST_F(PanelModel, search_doesNotLookIntoTheRemarkOfARow) {
    auto& picker = *model.targetLanguages();
    picker.setSearch("keep source");
    EXPECT_EQ(picker.count(), 0);
    picker.setSearch("of");
    ASSERT_EQ(picker.count(), 1);
    EXPECT_EQ(picker.data(picker.index(0), TargetLanguagePicker::DisplayName), "Off (keep source language)");
}

TEST_F(PanelModel, pagesAndEnds_goToTheNearestRowThatCanBeChosen) {
    makeModelAvailable({"de", "vi"});
    const auto& picker = *model.targetLanguages();
    EXPECT_EQ(picker.nearest(-5), 0);
    EXPECT_EQ(picker.nearest(3), 4);
    EXPECT_EQ(picker.nearest(99), 17);
    model.targetLanguages()->setSearch("xyz");
    EXPECT_EQ(picker.nearest(3), -1);
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

TEST_F(PanelModel, toggleShortcut_isShownOnceItActs) {
    int changes = 0;
    QObject::connect(&model, &MenuPanelModel::toggleShortcutChanged, [&changes] { ++changes; });
    EXPECT_EQ(model.toggleShortcut(), "");
    toggle.setBinding(settings.translateToggleBinding.get());
    toggle.install();
    EXPECT_GT(changes, 0);
    EXPECT_NE(model.toggleShortcut(), "");
}

TEST_F(PanelModel, toggleShortcutThatIsCleared_goes) {
    toggle.setBinding(settings.translateToggleBinding.get());
    toggle.install();
    settings.translateToggleBinding.set(std::nullopt);
    EXPECT_EQ(model.toggleShortcut(), "");
}

TEST_F(PanelModel, toggleShortcutOfAnotherProgram_isHidden) {
    keyboard.takenChords.push_back({KeyFlag::Control | KeyFlag::Option | KeyFlag::Command, VirtualKey::T});
    toggle.setBinding(settings.translateToggleBinding.get());
    toggle.install();
    EXPECT_EQ(model.toggleShortcut(), "");
}

TEST_F(PanelModel, cleanup_isTheSetting) {
    model.aiCleanup()->set(true);
    EXPECT_TRUE(settings.aiCleanupEnabled.get());
    settings.aiCleanupEnabled.set(false);
    EXPECT_FALSE(model.aiCleanup()->isOn());
}

TEST_F(PanelModel, statistics_areThoseOfTheWeek) {
    EXPECT_EQ(model.timeSaved(), "0s");
    EXPECT_EQ(model.dictations(), "0");
    dictate(80, 10);
    stats.refresh();
    EXPECT_EQ(model.timeSaved(), "1m");
    EXPECT_EQ(model.dictations(), "1");
}

TEST_F(PanelModel, searchForUpdates_isFollowed) {
    Published<bool> isChecking{true};
    model.followUpdateCheck(isChecking);
    EXPECT_TRUE(model.isCheckingForUpdates());
    int changes = 0;
    QObject::connect(&model, &MenuPanelModel::updateCheckChanged, [&] { ++changes; });
    isChecking.set(false);
    EXPECT_FALSE(model.isCheckingForUpdates());
    EXPECT_EQ(changes, 1);
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
    const auto& texts = *model.texts();
    EXPECT_EQ(texts.settings, "Settings…");
    EXPECT_EQ(texts.settingsShortcut, "⌘,");
    const auto& properties = MenuPanelTexts::staticMetaObject;
    EXPECT_GT(properties.propertyCount(), properties.propertyOffset());
    for (int index = properties.propertyOffset(); index < properties.propertyCount(); ++index)
        EXPECT_NE(properties.property(index).read(&texts).toString(), "")
            << properties.property(index).name();
}

TEST_F(PanelModel, languageModelInUse_isNamed) {
    makeModelAvailable({});
    EXPECT_EQ(model.languageModel().remark, "");
    settings.aiCleanupEnabled.set(true);
    EXPECT_EQ(model.languageModel().remark, "Using Apple Intelligence");
    EXPECT_TRUE(model.languageModel().isInUse);
    EXPECT_EQ(model.languageModel().cure, "");
    EXPECT_FALSE(model.languageModel().footerIsWarning);
}

TEST_F(PanelModel, languageModelThatIsOff_isExplainedWithTheWayToItsSettings) {
    for (const bool enabled : {false, true}) {
        const auto notes = languageModelNotes(AIAvailabilityState::IntelligenceOff, enabled);
        EXPECT_TRUE(notes.remark.startsWith("Apple Intelligence requires Mac and Siri"));
        EXPECT_EQ(notes.cure, "Apple Intelligence is off — open System Settings");
        EXPECT_EQ(notes.footer, notes.cure);
        EXPECT_EQ(notes.footerHelp, notes.remark);
        EXPECT_TRUE(notes.footerIsWarning && notes.footerActs);
    }
}

TEST_F(PanelModel, computerWithoutLanguageModel_isToldSoOnceAndWarnedOfNothing) {
    const auto notes = model.languageModel();
    EXPECT_EQ(notes.remark, "Needs a language model, and this computer has none");
    EXPECT_EQ(notes.cure, "");
    EXPECT_FALSE(notes.footerIsWarning || notes.footerActs);
}

TEST_F(PanelModel, languageModelThatStillLoads_isToldAsThatAndWarnedOfNothing) {
    const auto notes = languageModelNotes(AIAvailabilityState::ModelNotReady, true);
    EXPECT_EQ(notes.remark, "The language model is still loading");
    EXPECT_EQ(notes.footer, notes.remark);
    EXPECT_EQ(notes.cure, "");
    EXPECT_FALSE(notes.isInUse || notes.footerIsWarning || notes.footerActs);
}

TEST_F(PanelModel, languageModelThatLearnsALanguage_offersItAtOnce) {
    makeModelAvailable({"de"});
    const auto* picker = model.targetLanguages();
    const auto isEnabled = [picker](const char* code) {
        for (int row = 0; row < picker->rowCount(); ++row) {
            const auto index = picker->index(row);
            if (picker->data(index, TargetLanguagePicker::Code) == code)
                return picker->data(index, TargetLanguagePicker::IsEnabled).toBool();
        }
        return false;
    };
    EXPECT_FALSE(isEnabled("fr"));
    int resets = 0;
    QObject::connect(picker, &QAbstractItemModel::modelReset, [&resets] { ++resets; });
    languageModel.languages = {"de", "fr"};
    languageModel.tellChange();
    EXPECT_EQ(resets, 1);
    EXPECT_TRUE(isEnabled("fr"));
}

TEST(FormattedNumber, replacesTheFirstPlaceholderOnly) {
    EXPECT_EQ(formatted(QStringLiteral("%lld of %lld"), 3), "3 of %lld");
    EXPECT_EQ(formatted(QStringLiteral("none"), 3), "none");
}

} // namespace
