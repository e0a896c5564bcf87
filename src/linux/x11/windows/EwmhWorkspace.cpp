// SPDX-License-Identifier: MIT
#include "linux/x11/windows/EwmhWorkspace.h"

#include "linux/applications/applicationOfWindow.h"
#include "linux/support/applicationId.h"
#include "linux/support/processes.h"
#include "linux/x11/server/X11Connection.h"
#include "linux/x11/windows/ScreenCover.h"

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

constexpr std::size_t longestMemory = 100; ///< windows

} // namespace

EwmhWorkspace::EwmhWorkspace(X11Connection& connection, DesktopEntryCatalog& installed)
    : m_connection(connection)
    , m_installed(installed)
    , m_windows(connection)
    , m_pump(
          connection, [this](const xcb_generic_event_t& event) { handle(event); },
          [this] { followActiveWindow(); }) {
    m_windows.announceActiveWindow();
    if (const auto active = m_windows.activeWindow())
        remember(*active);
}

EwmhWorkspace::~EwmhWorkspace() = default;

std::optional<RunningApplication> EwmhWorkspace::frontmostApplication() {
    m_pump.drain();
    const auto active = m_windows.activeWindow();
    if (!active)
        return std::nullopt;
    const auto facts = m_windows.facts(*active);
    if (!facts || facts->isPartOfDesktop || isCovered(m_connection, *active))
        return std::nullopt;
    remember(*active);
    return applicationOfWindow(m_windows.processes({*active}).front(), facts->identity, m_installed);
}

std::optional<RunningApplication> EwmhWorkspace::runningApplication(pid_t pid) {
    const auto windows = windowsOf(pid);
    // A process of another machine is there as long as its windows are.
    const bool runs = pid < 0 ? !windows.empty() : processRuns(pid);
    if (!runs)
        return std::nullopt;
    const auto facts = windows.empty() ? std::nullopt : m_windows.facts(windows.front());
    return applicationOfWindow(pid, facts ? facts->identity : WindowIdentity{}, m_installed);
}

bool EwmhWorkspace::activate(pid_t pid) {
    const auto windows = windowsOf(pid);
    if (windows.empty() || !m_windows.canActivate())
        return false;
    const auto latest =
        std::find_if(m_recentlyActive.begin(), m_recentlyActive.end(), [&](xcb_window_t window) {
            return std::find(windows.begin(), windows.end(), window) != windows.end();
        });
    m_windows.requestActivation(latest == m_recentlyActive.end() ? windows.front() : *latest);
    return true;
}

std::optional<QString> EwmhWorkspace::ownBundleID() {
    return QString::fromLatin1(applicationId);
}

/// The windows of a process that can be brought to the front, the topmost first.
std::vector<xcb_window_t> EwmhWorkspace::windowsOf(pid_t pid) {
    m_pump.drain();
    const auto windows = m_windows.managedWindows();
    const auto processes = m_windows.processes(windows);
    std::vector<xcb_window_t> result;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (processes[i] != pid)
            continue;
        const auto facts = m_windows.facts(windows[i]);
        if (facts && !facts->isPartOfDesktop)
            result.push_back(windows[i]);
    }
    return result;
}

void EwmhWorkspace::handle(const xcb_generic_event_t& event) {
    m_activeWindowChanged = m_windows.announcesActiveWindow(event) || m_activeWindowChanged;
}

void EwmhWorkspace::followActiveWindow() {
    if (!std::exchange(m_activeWindowChanged, false))
        return;
    if (const auto active = m_windows.activeWindow())
        remember(*active);
}

void EwmhWorkspace::remember(xcb_window_t active) {
    std::erase(m_recentlyActive, active);
    m_recentlyActive.insert(m_recentlyActive.begin(), active);
    if (m_recentlyActive.size() > longestMemory)
        m_recentlyActive.pop_back();
}

} // namespace talvera
