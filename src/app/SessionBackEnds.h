// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Server.h"
#include "platform/desktop/DisplayClaim.h"
#include "platform/desktop/OverlayDesktop.h"
#include "platform/desktop/PanelDesktop.h"
#include "platform/desktop/Pasteboard.h"
#include "platform/desktop/PointerMonitor.h"
#include "platform/desktop/SessionAccess.h"
#include "platform/desktop/StatusItem.h"
#include "platform/desktop/Workspace.h"
#include "platform/keyboard/EventTap.h"
#include "platform/keyboard/KeyEventPoster.h"
#include "platform/keyboard/KeyboardLayout.h"

#include <QAbstractNativeEventFilter>
#include <QString>

#include <memory>

namespace talvera {

class Console;
class DesktopEntryCatalog;
class MainActor;
struct Directories;

/// Whose keys, windows and clipboard a session has.
enum class SessionKind {
    X11,     ///< those of an X server
    Wayland, ///< those of a compositor; the X server beside it knows of X programs alone
    Unknown, ///< none that we could reach
};

/// What this session offers to programs, whichever kind of session it is.
struct SessionOffer {
    static SessionOffer open();

    X11Server server;
    std::unique_ptr<X11Connection> x11;    ///< broken where no X server answers
    std::shared_ptr<DisplayClaim> claim{}; ///< to be the one agent there
    QString swaySocket{};                  ///< where sway says that it listens; empty elsewhere

    bool hasX11() const { return !x11->isBroken(); }

    /// By what the server is, and not by what the environment says: that may be another session's.
    SessionKind kind() const;

    /// Why no window can be shown here, for the log; empty where one can.
    QString whyNoWindows() const;

    /// Gets the toolkit ready for it. Before the application object is made.
    void prepareToolkit() const;
};

/// What watches keys, types, holds the clipboard, knows the windows of others and shows ours: for each of
/// these, what this session has for it.
struct SessionBackEnds {
    std::unique_ptr<EventTapFactory> eventTaps;
    std::unique_ptr<KeyboardLayout> keyboardLayout;
    std::unique_ptr<KeyEventPoster> keyPoster;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<SessionAccess> access;
    std::unique_ptr<OverlayDesktop> overlays;
    std::shared_ptr<PanelDesktop> panels;
    std::shared_ptr<PointerMonitor> pointer; ///< may be the same object as `panels`
    std::unique_ptr<StatusItem> statusItem;
    std::unique_ptr<QAbstractNativeEventFilter>
        toolkitEvents{}; ///< null where the toolkit hears all as it is
};

/// What the back ends work with.
struct BackEndParts {
    MainActor& actor;
    Console& console;
    const Directories& directories;
    DesktopEntryCatalog& installed;
};

/// The back ends of a session: the one place that decides between them. The offer and the parts outlive them.
SessionBackEnds chooseBackEnds(const SessionOffer& offer, const BackEndParts& parts);

} // namespace talvera
