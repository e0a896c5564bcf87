// SPDX-License-Identifier: MIT
#pragma once

#include "FakeMenuPanelWindow.h"
#include "SimulatedHUDPanel.h"
#include "core/WindowFactory.h"
#include "shell/onboarding/WizardWindow.h"

#include <functional>
#include <memory>
#include <utility>

namespace talvera::test {

/// A wizard's window that tells when it is brought up.
class FakeWizardWindow final : public WizardWindow {
public:
    explicit FakeWizardWindow(std::function<void()> onFront)
        : m_onFront(std::move(onFront)) {}

    void bringToFront() override { m_onFront(); }

private:
    std::function<void()> m_onFront;
};

/// The agent's windows on the virtual clock, seen by nobody.
class SimulatedWindows final : public WindowFactory {
public:
    explicit SimulatedWindows(SimulatedMainActor& actor)
        : m_actor(actor) {}

    std::function<void()> onOnboardingWindow; ///< the wizard is brought up
    std::function<void()> onPanelShown;       ///< the panel comes and takes the keyboard

    /// The HUD and the panel that were made last; null before the first.
    const SimulatedHUDPanel* hudPanel() const { return m_hudPanel; }
    FakeMenuPanelWindow* menuPanel() const { return m_menuPanel; }

    int hudPanelsMade = 0;

    std::unique_ptr<HUDPanel> makeHUDPanel(StateHolder&) override {
        auto made = std::make_unique<SimulatedHUDPanel>(m_actor);
        m_hudPanel = made.get();
        ++hudPanelsMade;
        return made;
    }
    std::unique_ptr<MenuPanelWindow> makeMenuPanel(MenuPanelModel&) override {
        auto made = std::make_unique<FakeMenuPanelWindow>(m_actor);
        made->onShown = [this] {
            if (onPanelShown)
                onPanelShown();
        };
        m_menuPanel = made.get();
        return made;
    }
    std::unique_ptr<WizardWindow> makeWizardWindow(OnboardingModel&) override {
        return std::make_unique<FakeWizardWindow>([this] {
            if (onOnboardingWindow)
                onOnboardingWindow();
        });
    }

private:
    SimulatedMainActor& m_actor;
    SimulatedHUDPanel* m_hudPanel = nullptr;
    FakeMenuPanelWindow* m_menuPanel = nullptr;
};

} // namespace talvera::test
