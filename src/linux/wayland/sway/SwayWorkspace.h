// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/sway/SwayIpc.h"
#include "linux/wayland/sway/swayWindows.h"
#include "platform/desktop/Workspace.h"

#include <vector>

namespace talvera {

class DesktopEntryCatalog;

/// The applications of a sway session by their windows, those of X programs included.
class SwayWorkspace final : public Workspace {
public:
    /// `installed` outlives the workspace.
    SwayWorkspace(SwayIpc sway, DesktopEntryCatalog& installed);

    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(pid_t pid) override;
    bool activate(pid_t pid) override;
    std::optional<QString> ownBundleID() override;

private:
    std::vector<SwayWindow> windows() const;

    const SwayIpc m_sway;
    DesktopEntryCatalog& m_installed;
};

} // namespace talvera
