// SPDX-License-Identifier: MIT
#include "app/QuickWindows.h"

#include "views/hud/QuickHUDPanel.h"
#include "views/onboarding/QuickWizardWindow.h"
#include "views/panel/QuickMenuPanel.h"
#include "views/settings/QuickSettingsWindow.h"

namespace talvera {

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

ViewEngine& QuickWindows::views() {
    if (!m_views) {
        m_views.emplace(m_parts.appearance);
        m_views->onMemoryGivenBack = [this] { m_libraries.giveBack(); };
        QuickMenuPanel::prepare(*m_views);
    }
    return *m_views;
}

} // namespace talvera
