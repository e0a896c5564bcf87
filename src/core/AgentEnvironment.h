// SPDX-License-Identifier: MIT
#pragma once

#include "shell/panel/MenuPanelController.h"

#include <QString>
#include <QUuid>

#include <functional>

namespace talvera {

class Accessibility;
class ApplicationHost;
class AudioRecorder;
class ChunkedTranscription;
class Console;
class DictationHUDController;
class FileSystem;
class FocusTracker;
class HotkeyManager;
class LanguageModel;
class LanguageRecognizer;
class LoginItem;
class MicrophonePermission;
class ModelStore;
class OnboardingController;
class OnboardingWindow;
class PreferenceStore;
class ReadinessMonitor;
class SoundPlayer;
class TextInserter;
class TranslateToggleHotkey;
class Warmup;
class WhisperRunner;
struct Directories;

/// A file name's part that no other file has: a UUID in upper case.
inline QString freshName() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

/// Everything that the dictation core works with. All of it outlives the core.
struct AgentEnvironment {
    MainActor& actor;

    // The machine
    const Directories& directories;
    FileSystem& files;
    ApplicationHost& application;
    Accessibility& accessibility;
    MicrophonePermission& microphone;
    LanguageModel& languageModel;
    LanguageRecognizer& languageRecognizer;
    LoginItem& loginItem;
    SoundPlayer& sounds;
    PreferenceStore& preferences;
    Console& console;

    // From speech to text, and the text to its place
    AudioRecorder& recorder;
    WhisperRunner& whisper;
    ChunkedTranscription& transcription;
    FocusTracker& focus;
    TextInserter& inserter;

    // What the user holds, chooses and sees
    HotkeyManager& hotkey;
    TranslateToggleHotkey& translateToggle;
    AppSettings& settings;
    ModelStore& models;
    StatsStore& stats;
    MenuBarController& menuBar;
    DictationHUDController& hud;
    MenuPanelController::Platform menuPanel;
    ReadinessMonitor& readiness;
    OnboardingController& onboarding;
    OnboardingWindow& onboardingWindow;
    Warmup& warmup;

    /// Takes the core's own account of what it does; a diagnostic build may show it.
    std::function<void(const QString& line)> trace = [](const QString&) {};
    std::function<QString()> makeFreshName = freshName;
};

} // namespace talvera
