// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAccessibility.h"
#include "FakeAudioConverter.h"
#include "FakeAudioFileReader.h"
#include "FakeChildProcess.h"
#include "FakeDesktopServices.h"
#include "FakeEventTap.h"
#include "FakeKeyboardLayout.h"
#include "FakeLanguageModel.h"
#include "FakeMicrophonePermission.h"
#include "FakePointerMonitor.h"
#include "FakeProgramActivation.h"
#include "FakeSessionAccess.h"
#include "FakeSessionDatabase.h"
#include "FakeSettingsPanels.h"
#include "FakeStatusItem.h"
#include "FakeWorkspace.h"
#include "InMemoryPreferenceStore.h"
#include "ObservedFakes.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "SimulatedWindows.h"
#include "core/Agent.h"
#include "core/Machine.h"
#include "linux/keyboard/XkbWindowKeys.h"
#include "persistence/AppSettings.h"
#include "platform/system/Directories.h"

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
    FakeSessionAccess access;
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
    FakeKeyboardLayout layout;
    const XkbWindowKeys windowKeys;
    FakeFileBrowser fileBrowser;
    FakeNotifier notifier{actor};
    FakeUpdateService updates{actor};
    FakeLoginItem loginItem;
    FakeSoundPlayer sounds;
    FakeApplicationHost application;
    InMemoryPreferenceStore preferences;
    FakeSessionDatabases databases;
    RecordingConsole console;

    /// The machine as the agent knows it.
    Machine machine();

private:
    bool m_textFieldFocused = true;
    int m_names = 0;
};

/// A simulated machine with the agent on it, and all that was seen of it. Arrange the machine and the
/// settings, then launch.
class SimulatedWorld : public SimulatedMachine {
public:
    SimulatedWorld();
    ~SimulatedWorld();

    AppSettings settings{preferences};
    SimulatedWindows windows{actor};

    void launch();
    bool hasAgent() const { return m_agent != nullptr; }
    Agent& agent() { return *m_agent; }

    /// The user's hotkey, by its callbacks.
    void pressStart();
    void pressEnd();

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

    /// The presses and releases that the wizard got.
    int demoStarts = 0;
    int demoEnds = 0;

    /// Whether saving the coming recordings fails.
    bool recordingsFail = false;

    QStringList wavFiles() const;
    QStringList chunkFiles() const;

private:
    void observeMachine();
    void observeAgent();
    void note(std::string effect, nlohmann::ordered_json fields = nlohmann::ordered_json::object());

    std::unique_ptr<Agent> m_agent;
    Cancellables m_observations;
};

} // namespace talvera::test
