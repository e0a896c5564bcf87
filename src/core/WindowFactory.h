// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace talvera {

class HUDPanel;
class MenuPanelModel;
class MenuPanelWindow;
class OnboardingWindow;
class StateHolder;

/// Makes the agent's windows; what they show outlives them. Main thread only.
class WindowFactory {
public:
    virtual ~WindowFactory() = default;

    /// The HUD, which shows the state that `holder` holds.
    virtual std::unique_ptr<HUDPanel> makeHUDPanel(StateHolder& holder) = 0;

    /// The panel that opens at the item in the tray.
    virtual std::unique_ptr<MenuPanelWindow> makeMenuPanel(MenuPanelModel& model) = 0;

    /// The first-run wizard. Called once, before the agent is launched.
    virtual std::unique_ptr<OnboardingWindow> makeOnboardingWindow() = 0;
};

} // namespace talvera
