// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11EventPump.h"
#include "linux/x11/windows/EwmhWindows.h"
#include "platform/desktop/Workspace.h"

#include <memory>
#include <optional>
#include <vector>

namespace talvera {

class DesktopEntryCatalog;
class X11Connection;

/// The applications of an X11 session, by their windows. The desktop's background and its panels are no
/// application, and under a locked screen none is in front. An application on another machine goes by a
/// negative process id.
class EwmhWorkspace final : public Workspace {
public:
    /// Takes the connection's events; on other threads it isn't used. Both outlive the workspace.
    EwmhWorkspace(X11Connection& connection, DesktopEntryCatalog& installed);
    ~EwmhWorkspace() override;

    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(pid_t pid) override;
    bool activate(pid_t pid) override;
    std::optional<QString> ownBundleID() override;

private:
    std::vector<xcb_window_t> windowsOf(pid_t pid);
    void handle(const xcb_generic_event_t& event);
    void followActiveWindow();
    void remember(xcb_window_t active);

    X11Connection& m_connection;
    DesktopEntryCatalog& m_installed;
    EwmhWindows m_windows;
    std::vector<xcb_window_t> m_recentlyActive; ///< the latest first
    bool m_activeWindowChanged = false;
    X11EventPump m_pump;
};

} // namespace talvera
