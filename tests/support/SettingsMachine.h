// SPDX-License-Identifier: MIT
#pragma once

#include "FakeDesktopServices.h"
#include "FakeEventTap.h"
#include "FakeFileSystem.h"
#include "FakeInstalledFonts.h"
#include "FakeKeyboardLayout.h"
#include "FakeLanguageModel.h"
#include "FakeLanguageModelChoice.h"
#include "FakeMicrophonePermission.h"
#include "FakePasteboard.h"
#include "FakeProgramActivation.h"
#include "FakeSessionAccess.h"
#include "FakeSettingsPanels.h"
#include "ObservedFakes.h"
#include "RecordingConsole.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "linux/keyboard/XkbWindowKeys.h"
#include "persistence/AppSettings.h"
#include "platform/system/Directories.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/SettingsModel.h"
#include "shell/settings/TapToToggleRule.h"
#include "shell/texts/InterfaceLanguage.h"

#include <QStringList>

#include <optional>

namespace talvera::test {

/// What the settings window tells of and works with: a machine on which everything works but the language
/// model, and a program that speaks the session's language.
class SettingsMachine {
public:
    SettingsMachine(MainActor& actor, SerialQueue& typing, AppSettings& userSettings,
                    const QString& sessionLanguage = QStringLiteral("en"))
        : settings(userSettings)
        , preferred{sessionLanguage, QStringLiteral("de")}
        , microphone(actor)
        , readiness({actor, microphone, access, languageModel, settingsPanels, activation})
        , hotkeyManager(actor, keyboard, console)
        , translateToggle(actor, keyboard, console)
        , modelParts{.general = {.settings = settings,
                                 .language = language,
                                 .loginItem = loginItem,
                                 .sounds = sounds,
                                 .relaunch = [this] { done << QStringLiteral("relaunch"); }},
                     .hotkey = {.settings = settings,
                                .layout = layout,
                                .recorder = hotkeyRecorder,
                                .openKeyboardSettings = [this] { done << QStringLiteral("keyboard"); }},
                     .toggleRecorder = toggleRecorder,
                     .cleanup = {.settings = settings,
                                 .readiness = readiness,
                                 .model = languageModel,
                                 .choice = languageModelChoice,
                                 .openModelSettings = [this] { done << QStringLiteral("model"); }},
                     .about = {.actor = actor,
                               .machine = description,
                               .pasteboard = pasteboard,
                               .typing = typing,
                               .licences = {files, QStringLiteral("/opt/talvera/Resources/licences")}}} {
        sounds.onPlay = [this](const QString& sound) {
            played << sound + QStringLiteral(" while ") + settings.startSoundName.get() +
                          QStringLiteral(" is set");
        };
    }

    void setModelState(std::optional<LanguageModel::UnavailableReason> reason) {
        languageModel.reason = reason;
        readiness.refresh();
    }

    /// Other models are there, and who observes the model hears of it.
    void setModels(std::vector<LanguageModelChoice::Offer> models) {
        languageModelChoice.models = std::move(models);
        languageModel.tellChange();
    }

    AppSettings& settings;
    const QStringList preferred;
    TapToToggleRule tapToToggleRule{settings};
    Directories directories{"/run/talvera", "/home/data", "/home/config", "/opt/talvera"};
    FakeFileSystem files{{"/opt/talvera/Resources/texts"}};
    RecordingConsole console;
    /// There are catalogs of these; none of them says anything.
    const bool hasCatalogs = [this] {
        for (const auto& code : QStringList{"en", "de", "fr", "pt-BR", "pt-PT"} + preferred)
            files.write(QStringLiteral("/opt/talvera/Resources/texts/%1.json").arg(code), "{}");
        return true;
    }();
    FakeInstalledFonts fonts;
    const InterfaceLanguage language{
        {files, directories, console, fonts}, settings.appLanguage.get(), preferred};
    FakeLoginItem loginItem;
    FakeSoundPlayer sounds;
    QStringList played; ///< each with the setting at that moment
    FakeKeyboardLayout layout{{{VirtualKey::T, "t"}}};
    const XkbWindowKeys keys;
    FakeMicrophonePermission microphone;
    FakeSessionAccess access;
    FakeLanguageModel languageModel;
    FakeLanguageModelChoice languageModelChoice;
    FakeSettingsPanels settingsPanels;
    FakeProgramActivation activation;
    ReadinessMonitor readiness;
    FakePasteboard pasteboard;
    FakeMachineDescription description;
    FakeKeyboard keyboard;
    Published<bool> suspendHotkey{false};
    HotkeyManager hotkeyManager;
    TranslateToggleHotkey translateToggle;
    HotkeyRecorderModel hotkeyRecorder{
        {settings, sounds, layout, keys, suspendHotkey, hotkeyManager, translateToggle},
        HotkeyRecorderModel::Shortcut::Hotkey};
    HotkeyRecorderModel toggleRecorder{
        {settings, sounds, layout, keys, suspendHotkey, hotkeyManager, translateToggle},
        HotkeyRecorderModel::Shortcut::TranslateToggle};
    QStringList done; ///< what was asked of the program
    const SettingsModel::Parts modelParts;
};

} // namespace talvera::test
