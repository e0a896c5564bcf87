// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAudioConverter.h"
#include "FakeAudioEngine.h"
#include "FakeChildProcess.h"
#include "FakeEventTap.h"
#include "FakeFileDownloads.h"
#include "FakeFileSystem.h"
#include "FakeKeyboardLayout.h"
#include "FakeLanguageModel.h"
#include "FakeMicrophonePermission.h"
#include "FakeProgramActivation.h"
#include "FakeSessionAccess.h"
#include "FakeSettingsPanels.h"
#include "ObservedFakes.h"
#include "RecordingConsole.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "linux/keyboard/XkbWindowKeys.h"
#include "models/ModelStore.h"
#include "persistence/AppSettings.h"
#include "platform/system/Directories.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/onboarding/RecognitionWarmup.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/HotkeyRecorderModel.h"

#include <QStringList>

namespace talvera::test {

/// A warm-up that is only counted.
class CountedWarmup final : public RecognitionWarmup {
public:
    void kickWhisperOnce(const WhisperRunner&) override { ++kicks; }
    int kicks = 0;
};

/// What the wizard tells of and works with: a machine on which everything works, and the model is still to
/// come.
class OnboardingMachine {
public:
    OnboardingMachine(MainActor& actor, BackgroundPool& background, AppSettings& userSettings)
        : settings(userSettings)
        , tool(actor, files)
        , network(actor, files)
        , permission(actor)
        , readiness({actor, permission, access, languageModel, settingsPanels, activation})
        , downloader({.background = background,
                      .network = network,
                      .files = files,
                      .processes = tool,
                      .directories = directories,
                      .makeFreshName = [this] { return freshName(); },
                      .store = models,
                      .source = ModelSource::of(QUrl(QStringLiteral("https://models.example/main")))})
        , controller({.actor = actor,
                      .background = background,
                      .files = files,
                      .directories = directories,
                      .makeFreshName = [this] { return freshName(); },
                      .audio = microphone,
                      .converters = converters,
                      .settings = settings,
                      .models = models,
                      .readiness = readiness,
                      .downloader = downloader,
                      .warmup = warmup,
                      .makeRunner =
                          [this] {
                              return WhisperRunner::makeDefault(tool, files, directories,
                                                                models.modelMainURL);
                          }})
        , hotkey(actor, keyboard, console)
        , translateToggle(actor, keyboard, console) {
        files.addExecutable(directories.resources + QStringLiteral("/Resources/whisper-cli"));
        microphone.secondsPerRecording = 2.0;
        say("hello world");
        QObject::connect(&recorder, &HotkeyRecorderModel::isRecordingChanged,
                         [this] { controller.setRecordsChord(recorder.isRecording()); });
    }

    /// What the recogniser will hear.
    void say(const char* text) {
        ToolRun run;
        run.text = text;
        tool.setRuns({run});
    }
    void putModelOnDisk() { files.write(models.modelMainURL, "model"); }
    void finishDownload() {
        putModelOnDisk();
        downloader.phase.set(ModelDownloader::Phase::Done);
    }
    void goTo(int step) {
        while (controller.step.get() < step)
            controller.advance();
        while (controller.step.get() > step)
            controller.back();
    }
    void setMissing(bool microphoneMissing, bool accessibilityMissing) {
        permission.current =
            microphoneMissing ? AuthorizationStatus::Denied : AuthorizationStatus::Authorized;
        access.trusted = !accessibilityMissing;
        readiness.refresh();
    }
    QStringList recordings() const {
        QStringList found;
        for (const auto& path : files.files()) {
            if (path.endsWith(QStringLiteral(".wav")))
                found << path;
        }
        return found;
    }

    QString freshName() { return QStringLiteral("NAME-%1").arg(++names); }

    AppSettings& settings;
    Directories directories{"/run/talvera", "/home/data", "/home/config", "/opt/talvera"};
    FakeFileSystem files{{directories.temporary, directories.applicationSupport}};
    FakeChildProcess tool;
    FakeFileDownloads network;
    FakeAudioEngine microphone;
    FakeAudioConverterFactory converters;
    FakeMicrophonePermission permission;
    FakeSessionAccess access;
    FakeLanguageModel languageModel;
    FakeSettingsPanels settingsPanels;
    FakeProgramActivation activation;
    FakeKeyboardLayout layout{{{VirtualKey::T, "t"}}};
    ReadinessMonitor readiness;
    ModelStore models{files, directories, ModelStore::Items::MainFileAlone};
    int names = 0;
    ModelDownloader downloader;
    CountedWarmup warmup;
    OnboardingController controller;
    FakeKeyboard keyboard;
    FakeSoundPlayer sounds;
    RecordingConsole console;
    const XkbWindowKeys keys;
    HotkeyManager hotkey;
    TranslateToggleHotkey translateToggle;
    HotkeyRecorderModel recorder{
        {settings, sounds, layout, keys, controller.suspendHotkey, hotkey, translateToggle},
        HotkeyRecorderModel::Shortcut::Hotkey};
};

} // namespace talvera::test
