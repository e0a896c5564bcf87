// SPDX-License-Identifier: MIT
#pragma once

#include "core/CommandedHotkey.h"
#include "core/LaunchRequest.h"
#include "core/Trace.h"

#include <memory>
#include <optional>

namespace talvera {

class AppDelegate;
class AppSettings;
class AudioRecorder;
class DictationHUDController;
class FocusTracker;
class HotkeyManager;
class MenuBarController;
class MenuPanelModel;
class ModelStore;
class OnboardingController;
class OutputPipeline;
class ReadinessMonitor;
class SettingsWindow;
class TranslateToggleHotkey;
class WhisperRunner;
class WindowFactory;
struct AgentCommand;
struct Machine;

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

    /// Takes away all that reacts: what runs comes to its end, and nothing begins any more.
    void stop();

    /// The user has started the program a second time.
    void startedAgain(const LaunchRequest& request = {});

    /// Brings the settings up, with that section.
    void openSettings(std::optional<SettingsSectionID> section = {});

    /// Does what another program of the user asks for, and answers with what there is to tell of it.
    /// `begun`: see CommandedHotkey.
    QString obey(const AgentCommand& command, CommandedHotkey::Begun begun = {});

    /// A pipeline of the agent's parts.
    std::shared_ptr<OutputPipeline> makePipeline();

    /// Gets the core's own account of what it does; a diagnostic build may show it.
    Trace onTrace;

private:
    class Wiring;
    const std::unique_ptr<Wiring> m_wiring;

public:
    // The parts that the program's start or a test works with. Their headers are for those who use them: each
    // is one that changes, and this one would pass it on to all of them.
    ModelStore& models;
    AudioRecorder& recorder;
    WhisperRunner& whisper;
    DictationHUDController& hud;
    MenuBarController& menuBar;
    ReadinessMonitor& readiness;
    FocusTracker& focus;
    HotkeyManager& hotkey;
    TranslateToggleHotkey& translateToggle;
    OnboardingController& onboarding;

    AppDelegate& delegate();

    SettingsWindow& settingsWindow();

    /// What the panel shows; null until it has been opened.
    MenuPanelModel* panelModel();
};

} // namespace talvera
