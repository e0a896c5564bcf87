// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/client/Toplevels.h"
#include "platform/desktop/Workspace.h"

#include <memory>

namespace talvera {

class DesktopEntryCatalog;

/// The windows of a session whose compositor tells of them but not of their processes: each stands for an
/// application of its own, under a number that the kernel gives no process.
class ToplevelWorkspace final : public Workspace {
public:
    /// `installed` outlives the workspace.
    ToplevelWorkspace(std::shared_ptr<Toplevels> windows, DesktopEntryCatalog& installed);

    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(pid_t pid) override;
    bool activate(pid_t pid) override;
    std::optional<QString> ownBundleID() override;

private:
    RunningApplication applicationOf(const Toplevels::Toplevel& window) const;

    const std::shared_ptr<Toplevels> m_windows;
    DesktopEntryCatalog& m_installed;
};

} // namespace talvera
