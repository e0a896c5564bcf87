// SPDX-License-Identifier: MIT
#pragma once

#include "app/LinuxDescription.h"
#include "app/ModelOffer.h"
#include "app/SessionBackEnds.h"
#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "core/Machine.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/atspi/AtspiAccessibility.h"
#include "linux/audio/SndFileReader.h"
#include "linux/audio/SoxrAudioConverter.h"
#include "linux/cld2/Cld2LanguageRecognizer.h"
#include "linux/dbus/DesktopNotifier.h"
#include "linux/dbus/PackageKitUpdates.h"
#include "linux/keyboard/XkbWindowKeys.h"
#include "linux/language/ChosenLanguageModel.h"
#include "linux/language/LlamaLanguageModel.h"
#include "linux/network/QtFileDownloads.h"
#include "linux/posix/PosixApplicationHost.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/posix/PosixRelauncher.h"
#include "linux/pulse/PulseAudioInput.h"
#include "linux/pulse/PulseConnection.h"
#include "linux/pulse/PulseMicrophonePermission.h"
#include "linux/pulse/PulseSoundPlayer.h"
#include "linux/sqlite/SqliteSessionDatabase.h"
#include "linux/support/applicationId.h"
#include "linux/xdg/DesktopSettingsPanels.h"
#include "linux/xdg/JsonPreferenceStore.h"
#include "linux/xdg/PortalAppearance.h"
#include "linux/xdg/QtInstalledFonts.h"
#include "linux/xdg/QtProgramActivation.h"
#include "linux/xdg/XdgFileBrowser.h"
#include "linux/xdg/XdgLoginItem.h"
#include "platform/absent/NoFileDownloads.h"
#include "platform/system/Directories.h"

#include <QCoreApplication>
#include <QDir>

#include <sys/types.h>

namespace talvera {

/// A computer with Linux and the session on it: one answer to each thing that the agent and its windows ask
/// of the machine. Made once, in the main thread, when there is an application object.
class LinuxMachine {
public:
    /// The actor and the console outlive the machine.
    LinuxMachine(QtMainActor& actor, Console& console, Directories directories, SessionOffer session);

    ~LinuxMachine() { endWork(); }
    LinuxMachine(const LinuxMachine&) = delete;
    LinuxMachine& operator=(const LinuxMachine&) = delete;

    /// The machine as the agent knows it.
    Machine machine();

    // What only windows ask for.
    DesktopAppearance& appearance() { return m_appearance; }
    OverlayDesktop& overlays() { return *m_backEnds.overlays; }
    PanelDesktop& panels() { return *m_backEnds.panels; }

    /// Ends what runs in the background and waits for its end. What has been said to be typed is typed.
    void endWork();

private:
    QtMainActor& m_actor;
    Console& m_console;
    const Directories m_directories;

    // What the program lies in and runs on
    PosixFileSystem m_files;
    PosixChildProcess m_processes;
    PosixApplicationHost m_application;
    ThreadSerialQueue m_preferenceWriter{"Preferences"};
    JsonPreferenceStore m_preferences{m_directories.configuration, m_files, m_actor, m_preferenceWriter,
                                      m_console};
    SqliteSessionDatabases m_sessions;
    XdgLoginItem m_loginItem{XdgLoginItem::session()};
    PosixRelauncher m_relauncher{QCoreApplication::applicationFilePath(), QDir::tempPath(),
                                 static_cast<pid_t>(QCoreApplication::applicationPid())};
    PackageKitUpdates m_updates{m_actor, QString::fromLatin1(applicationId)};
    const ModelOffer m_model = ModelOffer::ofThisBuild();
    QtFileDownloads m_network{m_actor, {.trustedToo = m_model.trustedToo}};

    // What the user types, and where it goes
    DesktopEntryCatalog m_installed{DesktopEntryCatalog::sessionDirectories(),
                                    DesktopEntryCatalog::sessionLanguages()};
    const SessionOffer m_session;
    const SessionBackEnds m_backEnds;
    const XkbWindowKeys m_windowKeys;
    AtspiAccessibility m_accessibility{*m_backEnds.workspace};
    QtProgramActivation m_activation;

    // What the user says and hears
    PulseConnection m_sound{m_actor};
    PulseAudioInput m_microphone{m_sound};
    PulseMicrophonePermission m_microphonePermission{m_sound};
    SoxrAudioConverterFactory m_converters;
    SndFileReader m_audioFiles;
    LinuxDescription m_description{m_sound};
    PulseSoundPlayer m_player{m_sound, m_audioFiles,
                              m_directories.resources + QStringLiteral("/Resources/sounds")};

    // What the user sees
    PortalAppearance m_appearance;
    DesktopSettingsPanels m_settingsPanels{DesktopSettingsPanels::session(), m_console};
    XdgFileBrowser m_fileBrowser;
    DesktopNotifier m_notifier;

    LlamaLanguageModel m_languageModelFiles{{m_actor, m_files, m_preferences, m_directories, m_console}};
    ChosenLanguageModel m_languageModel{{m_actor, m_preferences, m_languageModelFiles}};
    Cld2LanguageRecognizer m_languageRecognizer;
    QtInstalledFonts m_fonts;

    // Last, so that their jobs end before what these work with does.
    ThreadSerialQueue m_typing{"Paster.typing"};
    ThreadBackgroundPool m_background{m_actor};
};

} // namespace talvera
