// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/SwayWorkspace.h"

#include "linux/applications/applicationOfWindow.h"
#include "linux/support/applicationId.h"
#include "linux/support/processes.h"

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

auto firstOf(const std::vector<SwayWindow>& windows, pid_t pid) {
    return std::ranges::find(windows, pid, &SwayWindow::pid);
}

} // namespace

SwayWorkspace::SwayWorkspace(SwayIpc sway, DesktopEntryCatalog& installed)
    : m_sway(std::move(sway))
    , m_installed(installed) {}

std::optional<RunningApplication> SwayWorkspace::frontmostApplication() {
    const auto all = windows();
    const auto focused = std::ranges::find_if(all, &SwayWindow::hasFocus);
    if (focused == all.end())
        return std::nullopt;
    return applicationOfWindow(focused->pid, focused->identity, m_installed);
}

std::optional<RunningApplication> SwayWorkspace::runningApplication(pid_t pid) {
    if (!processRuns(pid))
        return std::nullopt;
    const auto all = windows();
    const auto window = firstOf(all, pid);
    return applicationOfWindow(pid, window == all.end() ? WindowIdentity{} : window->identity, m_installed);
}

bool SwayWorkspace::activate(pid_t pid) {
    if (!processRuns(pid)) // its windows may be there for a moment yet
        return false;
    const auto all = windows();
    const auto window = firstOf(all, pid);
    return window != all.end() && m_sway.run("[con_id=" + QByteArray::number(window->container) + "] focus");
}

std::optional<QString> SwayWorkspace::ownBundleID() {
    return QString::fromLatin1(applicationId);
}

std::vector<SwayWindow> SwayWorkspace::windows() const {
    return swayWindows(m_sway.ask(SwayIpc::Request::GetTree).value_or(QByteArray()));
}

} // namespace talvera
