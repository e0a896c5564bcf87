// SPDX-License-Identifier: MIT
#pragma once

#include "FakeEventTap.h"
#include "FakeFileSystem.h"
#include "FakeKeyboardLayout.h"
#include "FakeLanguageModel.h"
#include "FakeMicrophonePermission.h"
#include "FakeProgramActivation.h"
#include "FakeSessionAccess.h"
#include "FakeSessionDatabase.h"
#include "FakeSettingsPanels.h"
#include "InMemoryPreferenceStore.h"
#include "InlineBackgroundPool.h"
#include "PrintQt.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "persistence/AppSettings.h"
#include "persistence/StatsStore.h"
#include "platform/system/Directories.h"
#include "shell/MenuBarController.h"
#include "shell/readiness/ReadinessMonitor.h"

#include <gtest/gtest.h>

namespace talvera::test {

/// What the panel tells of, on a machine where everything works but the language model.
class PanelTest : public testing::Test {
protected:
    /// Another process has stored a dictation.
    void dictate(int words, double seconds) {
        DictationSession session;
        session.timestamp = actor.date();
        session.wordCount = words;
        session.audioDuration = seconds;
        databases.onDisk.push_back(session);
    }

    SimulatedMainActor actor;
    InMemoryPreferenceStore store;
    AppSettings settings{store};
    MenuBarController menuBar{actor, settings};
    Directories directories{"/run/talvera", "/home/data", "/home/config", "/opt/talvera"};
    FakeFileSystem files{{directories.temporary, directories.applicationSupport}};
    RecordingConsole console;
    FakeSessionDatabases databases;
    InlineBackgroundPool background;
    StatsStore stats{{actor, background, databases, files, directories, console}};
    FakeMicrophonePermission microphone{actor};
    FakeSessionAccess access;
    FakeLanguageModel languageModel;
    FakeSettingsPanels settingsPanels;
    FakeKeyboardLayout layout;
    FakeProgramActivation activation;
    FakeKeyboard keyboard;
    TranslateToggleHotkey toggle{actor, keyboard, console};
    ReadinessMonitor readiness{{actor, microphone, access, languageModel, settingsPanels, activation}};
};

} // namespace talvera::test
