// SPDX-License-Identifier: MIT
#pragma once

#include "linux/applications/DesktopEntryIndex.h"

#include <xcb/xcb.h>

#include <map>
#include <optional>
#include <vector>

#include <sys/types.h>

namespace talvera {

class X11Connection;

/// What a window tells of itself.
struct EwmhWindowFacts {
    bool isPartOfDesktop = false; ///< the desktop's background or a panel: no text goes there
    WindowIdentity identity;
};

/// The session's windows, as window manager and X server tell of them. Every answer is empty when the window,
/// the window manager or the server is gone. One thread; a call costs one or two round trips.
class EwmhWindows {
public:
    explicit EwmhWindows(X11Connection& connection);

    /// The window that the window manager calls active, which the keyboard goes to; none when no window is.
    std::optional<xcb_window_t> activeWindow();

    /// The windows that the window manager manages, the topmost first.
    std::vector<xcb_window_t> managedWindows();

    /// Nothing when the window is gone.
    std::optional<EwmhWindowFacts> facts(xcb_window_t window);

    /// The processes that the windows belong to, in the same order. A program on another machine has no
    /// process here: a negative number stands for it, the same as long as it is connected.
    std::vector<pid_t> processes(const std::vector<xcb_window_t>& windows);

    /// Whether a window manager runs that tells of the active window and changes it when asked.
    bool canActivate();

    /// Asks for the window to be brought to the front, as the user's wish.
    void requestActivation(xcb_window_t window);

    /// Asks the server to announce every change of the active window to this connection.
    void announceActiveWindow();
    /// Whether `event` is such an announcement.
    bool announcesActiveWindow(const xcb_generic_event_t& event) const;

private:
    std::map<xcb_window_t, pid_t> processesByClient(const std::vector<xcb_window_t>& windows);

    X11Connection& m_connection;
    bool m_serverKnowsProcesses = false;
    xcb_atom_t m_activeWindow;
};

} // namespace talvera
