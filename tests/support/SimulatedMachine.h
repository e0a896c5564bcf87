// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAccessibility.h"
#include "FakeAudioConverter.h"
#include "FakeAudioFileReader.h"
#include "FakeChildProcess.h"
#include "FakeDesktopServices.h"
#include "FakeEventTap.h"
#include "FakeFileDownloads.h"
#include "FakeInstalledFonts.h"
#include "FakeKeyboardLayout.h"
#include "FakeLanguageModel.h"
#include "FakeLanguageModelChoice.h"
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
#include "SimulatedDesktop.h"
#include "SimulatedMainActor.h"
#include "core/Machine.h"
#include "linux/keyboard/XkbWindowKeys.h"
#include "platform/system/Directories.h"

namespace talvera::test {

/// The machine that the agent runs on, all of it fake, on a virtual clock. It begins as one on which
/// everything works, with a text editor in front.
class SimulatedMachine {
public:
    SimulatedMachine();
    /// The tag of what follows an agent's death.
    struct AfterDeath {};
    /// The machine on which the agent of `before` has been killed at this moment: the disk, the preferences
    /// that were saved, the windows and the user's fingers are as they were, the user speaks and the
    /// recogniser hears as before, and everything works again. What the next start finds of the dead agent's
    /// files it removes, and it gets a directory of its own.
    SimulatedMachine(AfterDeath, const SimulatedMachine& before);
    SimulatedMachine(const SimulatedMachine&) = delete;
    SimulatedMachine& operator=(const SimulatedMachine&) = delete;

    /// The model that is published.
    static inline const QByteArray wholeModel = "the model";
    /// Puts the model on disk, or takes it away.
    void setModelReady(bool ready);
    /// Whether what has the focus can take text.
    void setTextFieldFocused(bool focused) { desktop.setTextFieldFocused(focused); }
    bool isTextFieldFocused() const { return desktop.isTextFieldFocused(); }
    /// The program's directory is deleted, and made anew in the program's next turn.
    void loseTemporaryDirectory();
    /// What a recording comes to, in seconds: all of it is loud, so nothing is trimmed.
    double recordedSeconds() const;
    /// Applications that are brought to the front come without a text field in focus.
    bool activationLosesTextField = false;
    /// How long an application takes to say what has the focus in it.
    Duration accessibilityTakes{};
    int livesBefore = 0; ///< agents that were killed here

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
    SimulatedDesktop desktop{actor, workspace, accessibility, keys};
    ObservedKeyEventPoster keyPoster{keys};
    FakeKeyboard keyboard;
    FakeMicrophonePermission microphonePermission{actor};
    FakeProgramActivation activation;
    FakeLanguageModel languageModel{actor};
    FakeLanguageModelChoice languageModelChoice;
    FakeLanguageRecognizer languageRecognizer;
    FakeInstalledFonts fonts;
    FakeSettingsPanels settingsPanels;
    FakeStatusItem statusItem;
    FakePointerMonitor pointer;
    FakeKeyboardLayout layout;
    const XkbWindowKeys windowKeys;
    FakeFileBrowser fileBrowser;
    FakeNotifier notifier{actor};
    FakeUpdateService updates{actor};
    FakeFileDownloads network{actor, disk};
    ModelSource modelSource;
    FakeLoginItem loginItem;
    FakeRelauncher relauncher;
    FakeMachineDescription description;
    FakeSoundPlayer sounds;
    FakeApplicationHost application;
    InMemoryPreferenceStore preferences;
    FakeSessionDatabases databases;
    RecordingConsole console;

    /// The machine as the agent knows it.
    Machine machine();

private:
    void makeEverythingWork();

    int m_names = 0;
};

} // namespace talvera::test
