// SPDX-License-Identifier: MIT
#include "app/Windows.h"

#include "app/Machine.h"

namespace talvera {

Windows::Windows(Machine& machine, AppSettings& settings)
    : m_machine(machine)
    , m_settings(settings) {}

void Windows::prepare(StateHolder& hud) {
    if (!m_hudTaken && !m_preparedHUD)
        m_preparedHUD = makeHUDPanel(hud);
}

std::unique_ptr<HUDPanel> Windows::takeHUDPanel(StateHolder& hud) {
    m_hudTaken = true;
    return m_preparedHUD ? std::move(m_preparedHUD) : makeHUDPanel(hud);
}

ViewEngine& Windows::views() {
    if (!m_views)
        m_views.emplace(m_machine.appearance);
    return *m_views;
}

std::unique_ptr<QuickHUDPanel> Windows::makeHUDPanel(StateHolder& hud) {
    return std::make_unique<QuickHUDPanel>(
        QuickHUDPanel::Parts{m_machine.actor, views(), m_machine.overlays, hud, m_settings});
}

} // namespace talvera
