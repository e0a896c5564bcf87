// SPDX-License-Identifier: MIT
#include "app/QuickWindows.h"

#include "concurrency/MainActor.h"
#include "views/hud/QuickHUDPanel.h"
#include "views/onboarding/QuickWizardWindow.h"
#include "views/panel/QuickMenuPanel.h"
#include "views/settings/QuickSettingsWindow.h"

#include <utility>

namespace talvera {

namespace {

/// The program starts meanwhile, and needs the processors for that.
constexpr Duration launchTime = seconds(0.5);

/// A window goes first; what it has left to the event loop, its model and what only those used follow one by
/// one.
constexpr Duration afterglow = seconds(1.0);

} // namespace

QuickWindows::QuickWindows(const Parts& parts)
    : m_parts(parts) {}

std::unique_ptr<HUDPanel> QuickWindows::makeHUDPanel(StateHolder& holder) {
    return std::make_unique<QuickHUDPanel>(
        QuickHUDPanel::Parts{m_parts.actor, views(), m_parts.overlays, holder, m_parts.settings});
}

std::unique_ptr<MenuPanelWindow> QuickWindows::makeMenuPanel(MenuPanelModel& model) {
    return std::make_unique<QuickMenuPanel>(views(), model, m_parts.panels);
}

std::unique_ptr<WizardWindow> QuickWindows::makeWizardWindow(OnboardingModel& model) {
    return std::make_unique<QuickWizardWindow>(views(), model, m_parts.panels);
}

std::unique_ptr<FramedWindow> QuickWindows::makeSettingsWindow(SettingsModel& model) {
    return std::make_unique<QuickSettingsWindow>(views(), model, m_parts.panels);
}

void QuickWindows::after(Duration delay, std::function<void()> work) {
    m_parts.actor.startTimer(delay, m_lifetime.ifAlive(std::move(work)));
}

ViewEngine& QuickWindows::views() {
    if (!m_views) {
        m_views.emplace(m_parts.appearance);
        m_views->onMemoryGivenBack = [this] { m_libraries.giveBack(); };
        m_views->onWindowGone = [this] { after(afterglow, [this] { m_views->giveBackMemory(); }); };
        after(launchTime, [this] { QuickMenuPanel::prepare(*m_views); });
    }
    return *m_views;
}

} // namespace talvera
