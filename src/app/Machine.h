// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "linux/applications/DesktopEntryCatalog.h"
#include "linux/atspi/AtspiAccessibility.h"
#include "linux/audio/SndFileReader.h"
#include "linux/audio/SoxrAudioConverter.h"
#include "linux/cld2/Cld2LanguageRecognizer.h"
#include "linux/dbus/DesktopNotifier.h"
#include "linux/dbus/PackageKitUpdates.h"
#include "linux/posix/PosixApplicationHost.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "linux/posix/StandardConsole.h"
#include "linux/pulse/PulseAudioInput.h"
#include "linux/pulse/PulseConnection.h"
#include "linux/pulse/PulseMicrophonePermission.h"
#include "linux/pulse/PulseSoundPlayer.h"
#include "linux/sqlite/SqliteSessionDatabase.h"
#include "linux/support/ApplicationId.h"
#include "linux/tray/TrayStatusItem.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/keys/X11EventTapFactory.h"
#include "linux/x11/keys/X11KeyboardLayout.h"
#include "linux/x11/server/X11Connection.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "linux/x11/windows/EwmhWorkspace.h"
#include "linux/x11/windows/X11OverlayDesktop.h"
#include "linux/x11/windows/X11PanelDesktop.h"
#include "linux/x11/windows/X11SessionAccess.h"
#include "linux/xdg/DesktopSettingsPanels.h"
#include "linux/xdg/JsonPreferenceStore.h"
#include "linux/xdg/PortalAppearance.h"
#include "linux/xdg/QtProgramActivation.h"
#include "linux/xdg/XdgFileBrowser.h"
#include "linux/xdg/XdgLoginItem.h"
#include "platform/absent/NoLanguageModel.h"
#include "platform/system/Directories.h"

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
