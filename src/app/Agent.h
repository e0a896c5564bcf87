// SPDX-License-Identifier: MIT
#pragma once

#include "app/StateTrace.h"
#include "app/Windows.h"
#include "core/AppDelegate.h"
#include "core/Warmup.h"
#include "delivery/FocusTracker.h"
#include "delivery/TextInserter.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "models/ModelStore.h"
#include "persistence/AppSettings.h"
#include "persistence/PreferredDelivery.h"
#include "persistence/StatsStore.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/onboarding/OnboardingWindow.h"
#include "shell/panel/MenuPanelModel.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/Updater.h"
#include "shell/texts/InterfaceLanguage.h"
#include "speech/AudioRecorder.h"
#include "speech/ChunkedTranscription.h"
#include "speech/WhisperRunner.h"

#include <memory>
#include <optional>

namespace talvera {

class Machine;

/// The program's logic, joined to the machine. Main thread only.
class Agent {
public:
    /// The machine outlives the agent.
    explicit Agent(Machine& machine);
    ~Agent();
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;

    void launch();

    /// The user has started the program a second time.
    void startedAgain();

private:
    AgentEnvironment environment();
    std::unique_ptr<MenuPanelWindow> makePanelWindow();
    void openSettings();

    Machine& m_machine;
    AppSettings m_settings;
    InterfaceLanguage m_language;
    ModelStore m_models;
    AudioRecorder m_recorder;
    WhisperRunner m_whisper;
    ChunkedTranscription m_transcription;
    Windows m_windows;
    DictationHUDController m_hud;
    MenuBarController m_menuBar;
    ReadinessMonitor m_readiness;
    Updater m_updater;
    FocusTracker m_focus;
    PreferredDelivery m_delivery;
    TextInserter m_inserter;
    HotkeyManager m_hotkey;
    TranslateToggleHotkey m_translateToggle;
    StatsStore m_stats;
    OnboardingController m_onboarding;
    OnboardingWindow m_onboardingWindow;
    Warmup m_warmup;
    std::optional<MenuPanelModel> m_panelModel;
    std::shared_ptr<AppDelegate> m_delegate;
    std::optional<StateTrace> m_trace;
};

} // namespace talvera
