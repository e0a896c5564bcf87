// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/kwin/KwinWindows.h"
#include "platform/desktop/Workspace.h"

#include <memory>

namespace talvera {

class DesktopEntryCatalog;

/// The applications of a Plasma session by their windows, as KWin has told of them.
class KwinWorkspace final : public Workspace {
public:
    /// `installed` outlives the workspace.
    KwinWorkspace(std::shared_ptr<KwinWindows> windows, DesktopEntryCatalog& installed);

    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(pid_t pid) override;
    bool activate(pid_t pid) override;
    std::optional<QString> ownBundleID() override;

private:
    const std::shared_ptr<KwinWindows> m_windows;
    DesktopEntryCatalog& m_installed;
};

} // namespace talvera
