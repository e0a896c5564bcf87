// SPDX-License-Identifier: MIT
#pragma once

#include "models/ModelSource.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace talvera {

class Accessibility;
class ApplicationHost;
class AudioConverterFactory;
class AudioEngine;
class AudioFileReader;
class BackgroundPool;
class ChildProcess;
class Console;
class EventTapFactory;
class FileBrowser;
class FileDownloads;
class FileSystem;
class InstalledFonts;
class KeyEventPoster;
class KeyboardLayout;
class LanguageModel;
class LanguageModelChoice;
class LanguageRecognizer;
class LoginItem;
class MachineDescription;
class MainActor;
class MicrophonePermission;
class Notifier;
class Pasteboard;
class PointerMonitor;
class PreferenceStore;
class ProgramActivation;
class Relauncher;
class SerialQueue;
class SessionAccess;
class SessionDatabases;
class SettingsPanels;
class SoundPlayer;
class StatusItem;
class UpdateService;
class WindowKeys;
class Workspace;
struct Directories;

/// The computer and the session that the agent runs in: one of each thing that it asks of them. All of it
/// outlives the agent.
struct Machine {
    /// What the user presses, and what types for the user.
    struct Keyboard {
        EventTapFactory& eventTaps;
        KeyboardLayout& layout;
        const WindowKeys& windowKeys;
        KeyEventPoster& poster;
        SerialQueue& typing; ///< "Paster.typing", where all typing and pasting is done in order
    };

    /// What the user works with and looks at.
    struct Desktop {
        Workspace& workspace;
        Accessibility& accessibility;
        SessionAccess& access;
        Pasteboard& pasteboard;
        StatusItem& statusItem;
        PointerMonitor& pointer;
        ProgramActivation& activation;
        SettingsPanels& settingsPanels;
        FileBrowser& fileBrowser;
        Notifier& notifier;
    };

    /// What the user says and hears.
    struct Sound {
        AudioEngine& engine;
        AudioConverterFactory& converters;
        AudioFileReader& files;
        MicrophonePermission& permission;
        SoundPlayer& player;
    };

    /// What the program lies in and runs on.
    struct System {
        FileSystem& files;
        const Directories& directories;
        ChildProcess& processes;
        ApplicationHost& application;
        PreferenceStore& preferences;
        SessionDatabases& sessions;
        LoginItem& loginItem;
        Relauncher& relauncher;
        MachineDescription& description;
        UpdateService& updates;
        FileDownloads& network;
        Console& console;
        std::function<QString()> makeFreshName; ///< a part for a file's name that no other file has
        ModelSource modelSource;                ///< what the recogniser here works with
    };

    /// What knows languages.
    struct Language {
        LanguageModel& model;
        LanguageModelChoice& choice; ///< of the model
        LanguageRecognizer& recognizer;
        InstalledFonts& fonts;
        QStringList preferred; ///< those that the user reads, best first, as "de-AT"
    };

    MainActor& actor;
    BackgroundPool& background;
    Keyboard keyboard;
    Desktop desktop;
    Sound sound;
    System system;
    Language language;
};

} // namespace talvera
