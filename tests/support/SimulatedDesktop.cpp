// SPDX-License-Identifier: MIT
#include "SimulatedDesktop.h"

#include <utility>

namespace talvera::test {

SimulatedDesktop::SimulatedDesktop(const SimulatedMainActor& actor, FakeWorkspace& workspace,
                                   FakeAccessibility& accessibility, FakeKeyEventPoster& keys)
    : m_actor(actor)
    , m_workspace(workspace)
    , m_accessibility(accessibility)
    , m_keys(keys) {
    m_workspace.onFrontmost = [this] { update(); };
    update();
}

std::optional<pid_t> SimulatedDesktop::applicationOf(const QString& window) const {
    const auto found = m_applications.find(window);
    return found == m_applications.end() ? std::nullopt : found->second;
}

void SimulatedDesktop::openWindow() {
    if (const auto front = m_workspace.frontmost())
        ++m_windowsOf[*front];
    update();
}

void SimulatedDesktop::goBackToFirstWindow() {
    if (const auto front = m_workspace.frontmost())
        m_windowsOf.erase(*front);
    update();
}

void SimulatedDesktop::setPopUp(bool isOpen) {
    m_hasPopUp = isOpen;
    update();
}

void SimulatedDesktop::setLocked(bool locked) {
    m_workspace.setCovered(locked);
}

void SimulatedDesktop::setTextFieldFocused(bool focused) {
    m_hasTextField = focused;
    update();
}

void SimulatedDesktop::setSilent(bool silent) {
    m_isSilent = silent;
    update();
}

SimulatedWindow SimulatedDesktop::windowInFront() {
    if (m_workspace.isCovered())
        return {locker, std::nullopt, false};
    const auto pid = m_workspace.frontmost();
    const auto front = pid ? m_workspace.runningApplication(*pid) : std::nullopt;
    if (!front)
        return {QString(), std::nullopt, m_hasTextField && !m_isSilent};
    auto name = front->localizedName.value_or(QStringLiteral("Program %1").arg(front->pid));
    if (const auto further = m_windowsOf.find(front->pid); further != m_windowsOf.end())
        name += QStringLiteral(" %1").arg(further->second + 1);
    return {name, front->pid, m_hasTextField && !m_isSilent};
}

void SimulatedDesktop::update() {
    const auto before = std::exchange(m_focused, windowInFront());
    m_applications[m_focused.name] = m_focused.pid;
    m_keys.focus(m_hasPopUp && m_focused.pid ? m_focused.name + QStringLiteral("/list") : m_focused.name);
    if (m_isSilent || m_workspace.isCovered())
        m_accessibility.answer = std::monostate{};
    else
        m_accessibility.setTextFieldFocused(m_focused.takesText);
    if (m_focused == before)
        return;
    if (!m_workspace.isActivating())
        m_lastChange = m_actor.now();
    if (onFocus)
        onFocus(before);
}

} // namespace talvera::test
