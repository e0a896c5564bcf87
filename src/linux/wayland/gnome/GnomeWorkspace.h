// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/gnome/ShellBus.h"
#include "linux/wayland/gnome/ShellView.h"
#include "platform/desktop/Workspace.h"

#include <memory>

namespace talvera {

class DesktopEntryCatalog;

/// The applications of a GNOME session by their windows, those of X programs included.
class GnomeWorkspace final : public Workspace {
public:
    /// `installed` outlives the workspace.
    GnomeWorkspace(std::shared_ptr<const ShellBus> bus, std::shared_ptr<const ShellView> view,
                   DesktopEntryCatalog& installed);

    std::optional<RunningApplication> frontmostApplication() override;
    std::optional<RunningApplication> runningApplication(pid_t pid) override;
    bool activate(pid_t pid) override;
    std::optional<QString> ownBundleID() override;

private:
    std::optional<ShellWindow> windowOf(pid_t pid) const;

    const std::shared_ptr<const ShellBus> m_bus;
    const std::shared_ptr<const ShellView> m_view;
    DesktopEntryCatalog& m_installed;
};

} // namespace talvera
