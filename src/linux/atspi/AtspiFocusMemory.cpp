// SPDX-License-Identifier: MIT
#include "linux/atspi/AtspiFocusMemory.h"

#include <algorithm>

namespace talvera {

namespace {

constexpr std::size_t mostApplications = 200;

} // namespace

AtspiFocusMemory::Application& AtspiFocusMemory::touched(const std::string& service) {
    if (m_applications.size() >= mostApplications && !m_applications.contains(service)) {
        m_applications.erase(
            std::min_element(m_applications.begin(), m_applications.end(), [](const auto& a, const auto& b) {
                return a.second.lastEvent < b.second.lastEvent;
            }));
    }
    auto& application = m_applications[service];
    application.lastEvent = ++m_events;
    return application;
}

void AtspiFocusMemory::focusGained(const AtspiObject& object) {
    auto& application = touched(object.service);
    application.focusedPath = object.path;
    application.inactive = false;
}

void AtspiFocusMemory::windowActivated(const AtspiObject& window) {
    auto& application = touched(window.service);
    // What had the focus was in another window, unless the new window's object has announced itself already.
    if (application.inactive && application.windowPath != window.path)
        application.focusedPath.clear();
    application.windowPath = window.path;
    application.inactive = false;
}

void AtspiFocusMemory::windowDeactivated(const AtspiObject& window) {
    auto& application = touched(window.service);
    application.windowPath = window.path;
    application.inactive = true;
}

std::optional<AtspiObject> AtspiFocusMemory::lastFocused(const std::string& service) const {
    const auto application = m_applications.find(service);
    if (application == m_applications.end() || application->second.focusedPath.empty())
        return std::nullopt;
    return AtspiObject{service, application->second.focusedPath};
}

} // namespace talvera
