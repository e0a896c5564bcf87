// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace talvera {

class FramedWindow;
class HUDPanel;
class MenuPanelModel;
class MenuPanelWindow;
class OnboardingModel;
class SettingsModel;
class StateHolder;
class WizardWindow;

/// Makes the agent's windows; what they show outlives them. Main thread only.
class WindowFactory {
public:
    virtual ~WindowFactory() = default;

    /// The HUD, which shows the state that `holder` holds.
    virtual std::unique_ptr<HUDPanel> makeHUDPanel(StateHolder& holder) = 0;

    /// The panel that opens at the item in the tray.
    virtual std::unique_ptr<MenuPanelWindow> makeMenuPanel(MenuPanelModel& model) = 0;

    /// The first-run wizard, each time that it is opened.
    virtual std::unique_ptr<WizardWindow> makeWizardWindow(OnboardingModel& model) = 0;

    /// The settings, each time that they are opened.
    virtual std::unique_ptr<FramedWindow> makeSettingsWindow(SettingsModel& model) = 0;
};

} // namespace talvera
