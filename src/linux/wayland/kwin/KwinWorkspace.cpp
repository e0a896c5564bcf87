// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/KwinWorkspace.h"

#include "linux/applications/applicationOfWindow.h"
#include "linux/support/applicationId.h"
#include "linux/support/processes.h"

#include <utility>

namespace talvera {

KwinWorkspace::KwinWorkspace(std::shared_ptr<KwinWindows> windows, DesktopEntryCatalog& installed)
    : m_windows(std::move(windows))
    , m_installed(installed) {}

std::optional<RunningApplication> KwinWorkspace::frontmostApplication() {
    const auto active = m_windows->active();
    if (!active)
        return std::nullopt;
    return applicationOfWindow(active->pid, active->identity, m_installed);
}

std::optional<RunningApplication> KwinWorkspace::runningApplication(pid_t pid) {
    if (!processRuns(pid))
        return std::nullopt;
    return applicationOfWindow(pid, m_windows->lastOf(pid).value_or(KwinWindow()).identity, m_installed);
}

bool KwinWorkspace::activate(pid_t pid) {
    const auto window = m_windows->lastOf(pid);
    if (!processRuns(pid) || !window)
        return false;
    m_windows->activate(*window);
    return true;
}

std::optional<QString> KwinWorkspace::ownBundleID() {
    return QString::fromLatin1(applicationId);
}

} // namespace talvera
