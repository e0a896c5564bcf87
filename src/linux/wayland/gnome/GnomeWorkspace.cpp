// SPDX-License-Identifier: MIT
#include "linux/wayland/gnome/GnomeWorkspace.h"

#include "linux/applications/applicationOfWindow.h"
#include "linux/support/applicationId.h"
#include "linux/support/processes.h"

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

/// The Shell tells one name, which may be either.
WindowIdentity identityOf(const QString& application) {
    return {.applicationId = application, .windowClass = application, .instance = {}};
}

} // namespace

GnomeWorkspace::GnomeWorkspace(std::shared_ptr<const ShellBus> bus, std::shared_ptr<const ShellView> view,
                               DesktopEntryCatalog& installed)
    : m_bus(std::move(bus))
    , m_view(std::move(view))
    , m_installed(installed) {}

std::optional<RunningApplication> GnomeWorkspace::frontmostApplication() {
    const auto focus = m_view->focus();
    if (focus.window == 0)
        return std::nullopt;
    return applicationOfWindow(focus.process, identityOf(focus.application), m_installed);
}

std::optional<RunningApplication> GnomeWorkspace::runningApplication(pid_t pid) {
    if (!processRuns(pid))
        return std::nullopt;
    const auto window = windowOf(pid);
    return applicationOfWindow(pid, window ? identityOf(window->application) : WindowIdentity{}, m_installed);
}

bool GnomeWorkspace::activate(pid_t pid) {
    if (!processRuns(pid) || !windowOf(pid)) // its windows may be there for a moment yet
        return false;
    m_bus->tell(QStringLiteral("Activate"), {static_cast<int>(pid)});
    return true;
}

std::optional<QString> GnomeWorkspace::ownBundleID() {
    return QString::fromLatin1(applicationId);
}

std::optional<ShellWindow> GnomeWorkspace::windowOf(pid_t pid) const {
    const auto all = m_view->windows();
    const auto window = std::ranges::find(all, pid, &ShellWindow::process);
    return window == all.end() ? std::nullopt : std::optional(*window);
}

} // namespace talvera
