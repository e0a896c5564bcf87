// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAccessibility.h"
#include "FakeAudioConverter.h"
#include "FakeAudioFileReader.h"
#include "FakeChildProcess.h"
#include "FakeEventTap.h"
#include "FakeLanguageModel.h"
#include "FakeMenuPanelWindow.h"
#include "FakeMicrophonePermission.h"
#include "FakePointerMonitor.h"
#include "FakeProgramActivation.h"
#include "FakeSessionDatabase.h"
#include "FakeSettingsPanels.h"
#include "FakeStatusItem.h"
#include "FakeWorkspace.h"
#include "InMemoryPreferenceStore.h"
#include "ObservedFakes.h"
#include "RecordingConsole.h"
#include "SimulatedHUDPanel.h"
#include "SimulatedMainActor.h"
#include "core/AppDelegate.h"
#include "core/DictationController.h"
#include "core/Warmup.h"
#include "delivery/FocusTracker.h"
#include "delivery/TextInserter.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "models/ModelStore.h"
#include "persistence/AppSettings.h"
#include "persistence/PreferredDelivery.h"
#include "persistence/StatsStore.h"
#include "platform/system/Directories.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "speech/AudioRecorder.h"
#include "speech/ChunkedTranscription.h"
#include "speech/WhisperRunner.h"

#include <nlohmann/json.hpp>

#include <QStringList>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace talvera::test {

/// Something that could be seen or heard of the agent from outside, or that it did to the machine.
struct Effect {
    double at = 0; ///< virtual seconds
    std::string effect;
    nlohmann::ordered_json fields = nlohmann::ordered_json::object();

    /// Whether stories tell of it: not of the trace, nor of files that are deleted.
    bool isTold() const;
    /// The effect in words, such as "hud notice Transcription failed warn 3".
    QString text() const;
};

/// The machine that the agent runs on, all of it fake, on a virtual clock. It begins as one on which
/// everything works, with a text editor in front.
class SimulatedMachine {
public:
    SimulatedMachine();
    SimulatedMachine(const SimulatedMachine&) = delete;
    SimulatedMachine& operator=(const SimulatedMachine&) = delete;

    /// Puts the model on disk, or takes it away.
    void setModelReady(bool ready);
    /// Whether what has the focus can take text.
    void setTextFieldFocused(bool focused);
    bool isTextFieldFocused() const { return m_textFieldFocused; }
    /// What a recording comes to, in seconds: all of it is loud, so nothing is trimmed.
    double recordedSeconds() const;
    /// Applications that are brought to the front come without a text field in focus.
    bool activationLosesTextField = false;

    SimulatedMainActor actor;
    SimulatedSerialQueue typing{actor};
    SimulatedBackgroundPool background{actor};

    Directories directories{"/run/talvera", "/home/data", "/home/config", "/opt/talvera"};
    FakeFileSystem disk{{directories.temporary, directories.applicationSupport}};
    ObservedFileSystem files{disk};
    FakeChildProcess tool{actor, disk};
    FakeAudioFileReader audioFiles{disk};
    FakeAudioEngine microphone;
    ObservedAudioEngine audioEngine{microphone};
    FakeAudioConverterFactory converters;
    FakeWorkspace workspace;
    FakeAccessibility accessibility;
    FakePasteboard clipboard;
    ObservedPasteboard pasteboard{clipboard};
    FakeKeyEventPoster keys{clipboard};
    ObservedKeyEventPoster keyPoster{keys};
    FakeKeyboard keyboard;
    FakeMicrophonePermission microphonePermission{actor};
    FakeProgramActivation activation;
    FakeLanguageModel languageModel;
    FakeLanguageRecognizer languageRecognizer;
    FakeSettingsPanels settingsPanels;
    FakeStatusItem statusItem;
    FakePointerMonitor pointer;
    FakeLoginItem loginItem;
    FakeSoundPlayer sounds;
    FakeApplicationHost application;
    InMemoryPreferenceStore preferences;
    FakeSessionDatabases databases;
    RecordingConsole console;

private:
    bool m_textFieldFocused = true;
};

/// The whole agent, real but for the parts that have nothing to do yet, on a simulated machine.
class SimulatedAgent {
public:
    SimulatedAgent(SimulatedMachine& machine, AppSettings& settings);
    ~SimulatedAgent();
    SimulatedAgent(const SimulatedAgent&) = delete;
    SimulatedAgent& operator=(const SimulatedAgent&) = delete;

    SimulatedMachine& machine;
    AppSettings& settings;
    ModelStore models;
    AudioRecorder recorder;
    WhisperRunner whisper;
    ChunkedTranscription transcription;
    DictationHUDController hud;
    SimulatedHUDPanel* panel = nullptr; ///< once it has been made
    MenuBarController menuBar;
    ReadinessMonitor readiness;
    FocusTracker focus;
    PreferredDelivery preferredDelivery;
    TextInserter inserter;
    HotkeyManager hotkey;
    TranslateToggleHotkey translateToggle;
    StatsStore stats;
    FakeOnboardingController onboarding;
    FakeOnboardingWindow onboardingWindow;
    Warmup warmup;
    std::function<void(const QString& line)> onTrace;
    std::shared_ptr<AppDelegate> delegate;

    /// What the delegate works with.
    AgentEnvironment environment();

private:
    int m_names = 0;
};

/// A simulated machine with the agent on it, and all that was seen of it. Arrange the machine and the
/// settings, then launch.
class SimulatedWorld : public SimulatedMachine {
public:
    SimulatedWorld();
    ~SimulatedWorld();

    AppSettings settings{preferences};

    void launch();
    bool hasAgent() const { return m_agent != nullptr; }
    SimulatedAgent& agent() { return *m_agent; }

    /// The user's hotkey, by its callbacks.
    void pressStart() { m_agent->hotkey.onPressStart(); }
    void pressEnd() { m_agent->hotkey.onPressEnd(); }

    /// Lets time pass until nothing is left to happen; false if there still is after an hour.
    bool runToRest() { return actor.runToRest(seconds(3600)); }

    /// What has happened so far; called for each as it happens.
    std::vector<Effect> effects;
    std::function<void(const Effect&)> onEffect;

    /// The effects of these kinds, in words.
    QStringList story(const QStringList& kinds) const;
    /// All effects that are told, in words.
    QStringList story() const;
    QStringList traces() const;

    /// Whether saving the coming recordings fails.
    bool recordingsFail = false;

    QStringList wavFiles() const;
    QStringList chunkFiles() const;

private:
    void observeMachine();
    void observeAgent();
    void note(std::string effect, nlohmann::ordered_json fields = nlohmann::ordered_json::object());

    std::unique_ptr<SimulatedAgent> m_agent;
    Cancellables m_observations;
};

} // namespace talvera::test
