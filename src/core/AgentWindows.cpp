// SPDX-License-Identifier: MIT
#include "core/AgentWiring.h"
#include "core/WindowFactory.h"
#include "persistence/AppSettings.h"
#include "platform/desktop/FileBrowser.h"
#include "platform/desktop/Notifier.h"
#include "platform/desktop/SettingsPanels.h"
#include "platform/language/LanguageModelChoice.h"
#include "platform/system/ApplicationHost.h"
#include "platform/system/PlatformError.h"
#include "shell/panel/MenuPanelController.h"
#include "shell/settings/SettingsModel.h"
#include "shell/settings/relaunchApplication.h"
#include "shell/texts/shownPath.h"
#include "text/Localization.h"

#include <QDir>

#include <utility>

// The windows, made when they are wanted, and what is told of the machine.

namespace talvera {

namespace {

constexpr Duration noticeTime = seconds(6.0);

/// What the folder of language models says of itself.
QString noteForLanguageModels() {
    const QStringList paragraphs{
        localized("languageModels.note.place",
                  "Put a language model into this folder, as a GGUF file. Talvera uses it to clean up and "
                  "translate what you dictate, on this computer alone."),
        localized("languageModels.note.kind",
                  "A model that follows instructions (“instruct”) is needed. Its file has to be smaller than "
                  "the memory that is free on this computer."),
        localized("languageModels.note.several", "Of several files none is used until you have chosen one.")};
    return paragraphs.join(QStringLiteral("\n\n")) + u'\n';
}

} // namespace

std::unique_ptr<MenuPanelController> Agent::Wiring::makeMenuPanel() {
    return std::make_unique<MenuPanelController>(
        menuBar, settings, stats,
        MenuPanelController::Parts{m_machine.actor, m_machine.desktop.statusItem, m_machine.desktop.pointer,
                                   [this] { return makePanelWindow(); }});
}

std::unique_ptr<MenuPanelWindow> Agent::Wiring::makePanelWindow() {
    auto& model = panelModel.emplace(MenuPanelModel::Parts{menuBar, settings, stats, readiness,
                                                           m_machine.language.model,
                                                           m_machine.keyboard.layout, translateToggle});
    model.onSettings = [this] { openSettings({}); };
    model.onCheckForUpdates = [this] { updater.checkForUpdates(); };
    model.followUpdateCheck(updater.isChecking);
    model.onQuit = [this] { m_machine.system.application.terminate(); };
    model.onLanguageModelSettings = [this] { openLanguageModelFolder(); };
    model.onAdvice = [this](const QString& text) {
        hud.showRemark(text, DictationHUDState::NoticeTone::Warn, noticeTime);
    };
    return m_windows.makeMenuPanel(model);
}

std::unique_ptr<WizardWindow> Agent::Wiring::makeWizardWindow() {
    if (!onboardingModel) {
        const auto& keyboard = m_machine.keyboard;
        auto& chords = hotkeyRecorder.emplace(
            HotkeyRecorderModel::Parts{settings, m_machine.sound.player, keyboard.layout, keyboard.windowKeys,
                                       onboarding.suspendHotkey, hotkey, translateToggle},
            HotkeyRecorderModel::Shortcut::Hotkey);
        QObject::connect(&chords, &HotkeyRecorderModel::isRecordingChanged,
                         [this, &chords] { onboarding.setRecordsChord(chords.isRecording()); });
        onboardingModel.emplace(
            OnboardingModel::Parts{onboarding, downloader, readiness, settings, keyboard.layout, &chords});
        onboardingModel->hotkey()->onKeyboardSettings = [this] { openKeyboardSettings(); };
    }
    return m_windows.makeWizardWindow(*onboardingModel);
}

void Agent::Wiring::openSettings(std::optional<SettingsSectionID> section) {
    delegate->closePanel();
    settingsWindow.show(section);
}

std::unique_ptr<SettingsModel> Agent::Wiring::makeSettingsModel() {
    makeSettingsRecorders();
    const auto relaunch = [this] {
        relaunchApplication(m_machine.actor, m_machine.system.relauncher,
                            [&application = m_machine.system.application] { application.terminate(); });
    };
    return std::make_unique<SettingsModel>(SettingsModel::Parts{
        .general = {.settings = settings,
                    .language = interfaceLanguage,
                    .loginItem = m_machine.system.loginItem,
                    .sounds = m_machine.sound.player,
                    .relaunch = relaunch},
        .hotkey = {.settings = settings,
                   .layout = m_machine.keyboard.layout,
                   .recorder = *settingsHotkey,
                   .openKeyboardSettings = [this] { openKeyboardSettings(); }},
        .toggleRecorder = *settingsToggle,
        .cleanup = {.settings = settings,
                    .readiness = readiness,
                    .model = m_machine.language.model,
                    .choice = m_machine.language.choice,
                    .openModelSettings = [this] { openLanguageModelFolder(); }},
        .about = {.actor = m_machine.actor,
                  .machine = m_machine.system.description,
                  .pasteboard = m_machine.desktop.pasteboard,
                  .typing = m_machine.keyboard.typing,
                  .licences = {m_machine.system.files, m_machine.system.directories.resources +
                                                           QStringLiteral("/Resources/licences")}}});
}

void Agent::Wiring::makeSettingsRecorders() {
    if (settingsHotkey)
        return;
    const auto& keyboard = m_machine.keyboard;
    const HotkeyRecorderModel::Parts parts{
        settings, m_machine.sound.player, keyboard.layout, keyboard.windowKeys, onboarding.suspendHotkey,
        hotkey,   translateToggle};
    for (auto* model : {&settingsHotkey.emplace(parts, HotkeyRecorderModel::Shortcut::Hotkey),
                        &settingsToggle.emplace(parts, HotkeyRecorderModel::Shortcut::TranslateToggle)}) {
        QObject::connect(model, &HotkeyRecorderModel::isRecordingChanged, [this, model] {
            if (model->isRecording() && delegate)
                delegate->endPressInHand();
        });
    }
}

void Agent::Wiring::openKeyboardSettings() {
    if (!m_machine.desktop.settingsPanels.open(SettingsPanels::Panel::Keyboard))
        hud.showRemark(localized("settings.none.keyboard", "This desktop has no keyboard settings to open"),
                       DictationHUDState::NoticeTone::Info, noticeTime);
}

void Agent::Wiring::openLanguageModelFolder() {
    try {
        const auto folder = m_machine.language.choice.makeFolder(noteForLanguageModels());
        m_machine.desktop.fileBrowser.show(folder);
        hud.showRemark(formatted(localized("hud.languageModel.folder", "Language models belong into %@"),
                                 shownPath(folder, QDir::homePath())),
                       DictationHUDState::NoticeTone::Info, noticeTime);
    } catch (const PlatformError&) {
        hud.showRemark(localized("hud.languageModel.none", "This computer has no on-device language model"),
                       DictationHUDState::NoticeTone::Info, noticeTime);
    }
}

/// What has been said is used; what is being said isn't heard.
void Agent::Wiring::tellOfLostMicrophone() {
    hud.showNotice(localized("hud.microphone.lost", "The microphone is gone. What you said before is kept."),
                   DictationHUDState::NoticeTone::Warn, noticeTime);
}

/// In a language that can be read, since the wanted one can't.
void Agent::Wiring::tellOfMissingFont() {
    const auto& package = interfaceLanguage.missingFont();
    if (!package)
        return;
    const auto title =
        formatted(localized("fonts.missing.title", "Your language needs the package %@"), *package);
    const auto text = localized("fonts.missing.text", "No font of this computer has its letters. Install "
                                                      "the package, then start Talvera again.");
    m_machine.desktop.notifier.notify(title, text, m_lifetime.ifAlive([this, title](bool shown) {
        if (!shown)
            hud.showRemark(title, DictationHUDState::NoticeTone::Warn, noticeTime);
    }));
}

} // namespace talvera
