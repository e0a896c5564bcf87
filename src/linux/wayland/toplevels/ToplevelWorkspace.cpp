// SPDX-License-Identifier: MIT
#include "linux/wayland/toplevels/ToplevelWorkspace.h"

#include "linux/applications/applicationOfWindow.h"
#include "linux/support/applicationId.h"

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

/// The kernel's last process has the number 2^22.
constexpr pid_t beforeFirst = 1 << 23;

pid_t standInFor(Toplevels::Window window) {
    return beforeFirst + static_cast<pid_t>(window);
}

} // namespace

ToplevelWorkspace::ToplevelWorkspace(std::shared_ptr<Toplevels> windows, DesktopEntryCatalog& installed)
    : m_windows(std::move(windows))
    , m_installed(installed) {}

std::optional<RunningApplication> ToplevelWorkspace::frontmostApplication() {
    const auto all = m_windows->known();
    const auto* active = Toplevels::activeOf(all);
    return active == nullptr ? std::nullopt : std::optional(applicationOf(*active));
}

std::optional<RunningApplication> ToplevelWorkspace::runningApplication(pid_t pid) {
    for (const auto& window : m_windows->known()) {
        if (standInFor(window.number) == pid)
            return applicationOf(window);
    }
    return std::nullopt;
}

bool ToplevelWorkspace::activate(pid_t pid) {
    if (!runningApplication(pid))
        return false;
    m_windows->activate(static_cast<Toplevels::Window>(pid - beforeFirst));
    return true;
}

std::optional<QString> ToplevelWorkspace::ownBundleID() {
    return QString::fromLatin1(applicationId);
}

RunningApplication ToplevelWorkspace::applicationOf(const Toplevels::Toplevel& window) const {
    const auto name = QString::fromStdString(window.applicationId);
    return applicationOfWindow(standInFor(window.number), {name, name, {}}, m_installed);
}

} // namespace talvera
