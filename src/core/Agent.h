// SPDX-License-Identifier: MIT
#pragma once

#include "core/AppDelegate.h"
#include "core/Machine.h"
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

class MenuPanelWindow;
class OutputPipeline;
class WindowFactory;

/// The program's logic, joined to the machine that it is given. Nothing else joins them: the program, the
/// simulation and every test of the whole run this class. Main thread only.
class Agent {
public:
    /// All three outlive the agent. What runs in the machine's background works with the agent's parts, so it
    /// has to end before the agent does.
    Agent(const Machine& machine, AppSettings& settings, WindowFactory& windows);
    ~Agent();
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;

    void launch();

    /// Makes the window that the first dictation would else have to wait for. For when the launch is over.
    void prepareWindows();

    /// The user has started the program a second time.
    void startedAgain();

    /// A pipeline of the agent's parts.
    std::shared_ptr<OutputPipeline> makePipeline();

    /// Gets the core's own account of what it does; a diagnostic build may show it.
    Trace onTrace;

    // The parts, each after those that it works with.
    InterfaceLanguage interfaceLanguage; ///< first, so that everything speaks it
    AppSettings& settings;
    ModelStore models;
    AudioRecorder recorder;
    WhisperRunner whisper;
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
    OnboardingController onboarding;
    std::unique_ptr<OnboardingWindow> onboardingWindow;
    Warmup warmup;
    std::optional<MenuPanelModel> panelModel; ///< once the panel has been opened
    std::shared_ptr<AppDelegate> delegate;    ///< all that reacts; once it is gone, nothing begins any more

private:
    std::shared_ptr<AppDelegate> makeDelegate();
    std::shared_ptr<DictationController> makeDictation(std::shared_ptr<PermissionPrompt> permissions);
    std::unique_ptr<MenuPanelController> makeMenuPanel();
    std::unique_ptr<MenuPanelWindow> makePanelWindow();
    void openSettings();
    void tellOfLostMicrophone();
    Trace trace();

    const Machine m_machine;
    WindowFactory& m_windows;
    Subscription m_recordingEnd;
};

} // namespace talvera
