// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "core/Agent.h"
#include "core/AgentControl.h"
#include "core/AppDelegate.h"
#include "core/Machine.h"
#include "core/Warmup.h"
#include "delivery/FocusTracker.h"
#include "delivery/TextInserter.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "models/ModelDownloader.h"
#include "models/ModelStore.h"
#include "persistence/PreferredDelivery.h"
#include "persistence/StatsStore.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/onboarding/OnboardingModel.h"
#include "shell/onboarding/OnboardingWindow.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/HotkeyRecorderModel.h"
#include "shell/settings/SettingsWindow.h"
#include "shell/settings/TapToToggleRule.h"
#include "shell/settings/Updater.h"
#include "shell/texts/InterfaceLanguage.h"
#include "speech/AudioRecorder.h"
#include "speech/ChunkedTranscription.h"
#include "speech/EarlyRecognition.h"
#include "speech/WhisperRunner.h"

#include <memory>
#include <optional>

namespace talvera {

class DictationController;
class MenuPanelController;
class MenuPanelWindow;
class PermissionPrompt;
class SettingsModel;
class WizardWindow;

/// The parts, and how they are joined.
class Agent::Wiring {
public:
    Wiring(const Machine& machine, AppSettings& settings, WindowFactory& windows, const Trace& onTrace);

    std::shared_ptr<OutputPipeline> makePipeline();
    void tellOfLostMicrophone();
    void tellOfMissingFont();
    void openSettings(std::optional<SettingsSectionID> section);

private:
    const Machine m_machine; ///< everything below works with it

public:
    // Each after those that it works with.
    InterfaceLanguage interfaceLanguage; ///< first, so that everything speaks it
    AppSettings& settings;
    TapToToggleRule tapToToggleRule;
    ModelStore models;
    AudioRecorder recorder;
    WhisperRunner whisper;
    EarlyRecognition early;
    ChunkedTranscription transcription;
    DictationHUDController hud;
    MenuBarController menuBar;
    ReadinessMonitor readiness;
    Updater updater;
    FocusTracker focus;
    PreferredDelivery delivery;
    TextInserter inserter;
    HotkeyManager hotkey;
    TranslateToggleHotkey translateToggle;
    StatsStore stats;
    Warmup warmup;
    ModelDownloader downloader;
    OnboardingController onboarding;
    std::optional<HotkeyRecorderModel> hotkeyRecorder; ///< once the wizard has been opened
    std::optional<OnboardingModel> onboardingModel;    ///< likewise
    OnboardingWindow onboardingWindow;
    std::optional<HotkeyRecorderModel> settingsHotkey; ///< once the settings have been opened
    std::optional<HotkeyRecorderModel> settingsToggle; ///< likewise
    SettingsWindow settingsWindow;
    std::optional<MenuPanelModel> panelModel; ///< once the panel has been opened
    std::shared_ptr<AppDelegate> delegate;    ///< all that reacts; once it is gone, nothing begins any more
    std::optional<AgentControl> control;      ///< until `stop`

private:
    std::shared_ptr<AppDelegate> makeDelegate();
    std::shared_ptr<DictationController> makeDictation(std::shared_ptr<PermissionPrompt> permissions);
    std::unique_ptr<MenuPanelController> makeMenuPanel();
    std::unique_ptr<MenuPanelWindow> makePanelWindow();
    std::unique_ptr<WizardWindow> makeWizardWindow();
    WhisperRunner makeRunner() const;
    void openKeyboardSettings();
    void openLanguageModelFolder();
    std::unique_ptr<SettingsModel> makeSettingsModel();
    void makeSettingsRecorders();
    Trace trace();

    WindowFactory& m_windows;
    const Trace& m_onTrace;
    Subscription m_recordingEnd;
    Lifetime m_lifetime;
};

} // namespace talvera
