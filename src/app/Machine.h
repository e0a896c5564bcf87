// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "platform/Directories.h"
#include "platform/absent/NoLanguageModel.h"
#include "platform/linux/atspi/AtspiAccessibility.h"
#include "platform/linux/audio/SndFileReader.h"
#include "platform/linux/audio/SoxrAudioConverter.h"
#include "platform/linux/cld2/Cld2LanguageRecognizer.h"
#include "platform/linux/dbus/DesktopNotifier.h"
#include "platform/linux/dbus/PackageKitUpdates.h"
#include "platform/linux/posix/PosixApplicationHost.h"
#include "platform/linux/posix/PosixChildProcess.h"
#include "platform/linux/posix/PosixFileSystem.h"
#include "platform/linux/posix/StandardConsole.h"
#include "platform/linux/pulse/PulseAudioInput.h"
#include "platform/linux/pulse/PulseConnection.h"
#include "platform/linux/pulse/PulseMicrophonePermission.h"
#include "platform/linux/pulse/PulseSoundPlayer.h"
#include "platform/linux/sqlite/SqliteSessionDatabase.h"
#include "platform/linux/tray/TrayStatusItem.h"
#include "platform/linux/x11/EwmhWorkspace.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11EventTapFactory.h"
#include "platform/linux/x11/X11KeyEventPoster.h"
#include "platform/linux/x11/X11KeyboardLayout.h"
#include "platform/linux/x11/X11OverlayDesktop.h"
#include "platform/linux/x11/X11PanelDesktop.h"
#include "platform/linux/x11/X11Pasteboard.h"
#include "platform/linux/x11/X11SessionAccess.h"
#include "platform/linux/xdg/ApplicationId.h"
#include "platform/linux/xdg/DesktopEntryCatalog.h"
#include "platform/linux/xdg/DesktopSettingsPanels.h"
#include "platform/linux/xdg/JsonPreferenceStore.h"
#include "platform/linux/xdg/PortalAppearance.h"
#include "platform/linux/xdg/QtProgramActivation.h"
#include "platform/linux/xdg/XdgFileBrowser.h"
#include "platform/linux/xdg/XdgLoginItem.h"

#include <memory>

namespace talvera {

/// The computer and the session that the agent runs in: one of each thing that it asks of them. Made once, in
/// the main thread.
class Machine {
public:
    /// `connection` may be null: then nothing of X11 works, and says so.
    Machine(QtMainActor& mainActor, StandardConsole& console, Directories directories,
            std::unique_ptr<X11Connection> connection);

    ~Machine() { endWork(); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    /// Ends what runs in the background and waits for its end. What has been said to be typed is typed.
    void endWork();

    QtMainActor& actor;
    StandardConsole& console;
    const Directories directories;
    const std::unique_ptr<X11Connection> x11;

    PosixFileSystem files;
    PosixChildProcess processes;
    PosixApplicationHost application;
    ThreadSerialQueue preferenceWriter{"Preferences"};
    JsonPreferenceStore preferences;
    SqliteSessionDatabases sessions;

    // What the user types and where it goes
    X11EventTapFactory keyboard{actor};
    X11KeyboardLayout keyboardLayout;
    DesktopEntryCatalog installed{DesktopEntryCatalog::sessionDirectories(),
                                  DesktopEntryCatalog::sessionLanguages()};
    EwmhWorkspace workspace{x11.get(), installed};
    X11SessionAccess access{x11.get()};
    AtspiAccessibility accessibility{workspace, access};
    X11KeyEventPoster keys;
    X11Pasteboard pasteboard;

    // What the user says
    PulseConnection sound{actor};
    PulseAudioInput microphone{sound};
    PulseMicrophonePermission microphonePermission{sound};
    SoxrAudioConverterFactory converters;
    SndFileReader audioFiles;
    Cld2LanguageRecognizer languageRecognizer;

    // What the user sees
    PortalAppearance appearance;
    X11OverlayDesktop overlays;
    TrayStatusItem statusItem;
    X11PanelDesktop panelDesktop;
    XdgFileBrowser fileBrowser;

    NoLanguageModel languageModel;
    XdgLoginItem loginItem{XdgLoginItem::session()};
    DesktopSettingsPanels settingsPanels{DesktopSettingsPanels::session(), console};
    PackageKitUpdates updates{actor, QString::fromLatin1(ApplicationId)};
    DesktopNotifier notifier;
    QtProgramActivation activation;
    PulseSoundPlayer sounds{sound, audioFiles, directories.resources + QStringLiteral("/Resources/sounds")};

    // Last, so that their jobs end before what these work with does.
    ThreadSerialQueue typing{"Paster.typing"};
    ThreadBackgroundPool background{actor};
};

} // namespace talvera
