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

/// A wizard's window that tells when it is brought up, and when it has gone.
class FakeWizardWindow final : public WizardWindow {
public:
    FakeWizardWindow(OnboardingModel& model, std::function<void()> onFront,
                     std::function<void(FakeWizardWindow*)> onGone)
        : m_model(model)
        , m_onFront(std::move(onFront))
        , m_onGone(std::move(onGone)) {}
    ~FakeWizardWindow() override { m_onGone(this); }

    /// What it shows, and what its controls do.
    OnboardingModel& model() { return m_model; }
    void bringToFront() override { m_onFront(); }

private:
    OnboardingModel& m_model;
    std::function<void()> m_onFront;
    std::function<void(FakeWizardWindow*)> m_onGone;
};

/// The settings' window, which tells when it is brought up.
class FakeSettingsWindow final : public FramedWindow {
public:
    explicit FakeSettingsWindow(std::function<void()> onFront)
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
    std::function<void()> onSettingsWindow;   ///< the settings are brought up
    std::function<void()> onPanelShown;       ///< the panel comes and takes the keyboard

    /// The HUD and the panel that were made last; null before the first.
    const SimulatedHUDPanel* hudPanel() const { return m_hudPanel; }
    FakeMenuPanelWindow* menuPanel() const { return m_menuPanel; }
    /// The wizard's window, while there is one.
    FakeWizardWindow* wizard() const { return m_wizard; }

    /// The settings' window that was made last; null before the first.
    FramedWindow* settingsWindow() const { return m_settingsWindow; }

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
    std::unique_ptr<WizardWindow> makeWizardWindow(OnboardingModel& model) override {
        const auto onFront = [this] {
            if (onOnboardingWindow)
                onOnboardingWindow();
        };
        const auto onGone = [this](const FakeWizardWindow* gone) {
            if (m_wizard == gone)
                m_wizard = nullptr;
        };
        auto made = std::make_unique<FakeWizardWindow>(model, onFront, onGone);
        m_wizard = made.get();
        return made;
    }
    std::unique_ptr<FramedWindow> makeSettingsWindow(SettingsModel&) override {
        auto made = std::make_unique<FakeSettingsWindow>([this] {
            if (onSettingsWindow)
                onSettingsWindow();
        });
        m_settingsWindow = made.get();
        return made;
    }

private:
    SimulatedMainActor& m_actor;
    SimulatedHUDPanel* m_hudPanel = nullptr;
    FakeMenuPanelWindow* m_menuPanel = nullptr;
    FakeWizardWindow* m_wizard = nullptr;
    FramedWindow* m_settingsWindow = nullptr;
};

} // namespace talvera::test
