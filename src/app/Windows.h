// SPDX-License-Identifier: MIT
#pragma once

#include "views/ViewEngine.h"
#include "views/hud/QuickHUDPanel.h"

#include <memory>
#include <optional>

namespace talvera {

class Machine;

/// The agent's windows. Nothing of them is loaded before it is needed or there is time for it.
class Windows {
public:
    /// Both outlive the windows.
    Windows(Machine& machine, AppSettings& settings);

    /// Makes what has to be there at once when it is asked for.
    void prepare(StateHolder& hud);

    /// The HUD's panel: the prepared one, if there is one.
    std::unique_ptr<HUDPanel> takeHUDPanel(StateHolder& hud);

    ViewEngine& views();

private:
    std::unique_ptr<QuickHUDPanel> makeHUDPanel(StateHolder& hud);

    Machine& m_machine;
    AppSettings& m_settings;
    std::optional<ViewEngine> m_views;
    std::unique_ptr<QuickHUDPanel> m_preparedHUD;
    bool m_hudTaken = false;
};

} // namespace talvera
