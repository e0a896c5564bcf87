// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Time.h"
#include "core/WindowFactory.h"
#include "linux/posix/LaterLibraries.h"
#include "views/ViewEngine.h"

#include <functional>
#include <optional>

namespace talvera {

class AppSettings;
class DesktopAppearance;
class MainActor;
class OverlayDesktop;
class PanelDesktop;

/// The agent's windows in Qt Quick. Nothing of that is loaded before the first of them is made.
class QuickWindows final : public WindowFactory {
public:
    /// What the windows work with; all of it outlives them.
    struct Parts {
        MainActor& actor;
        AppSettings& settings;
        DesktopAppearance& appearance;
        OverlayDesktop& overlays;
        PanelDesktop& panels;
    };

    explicit QuickWindows(const Parts& parts);

    std::unique_ptr<HUDPanel> makeHUDPanel(StateHolder& holder) override;
    std::unique_ptr<MenuPanelWindow> makeMenuPanel(MenuPanelModel& model) override;
    std::unique_ptr<WizardWindow> makeWizardWindow(OnboardingModel& model) override;
    std::unique_ptr<FramedWindow> makeSettingsWindow(SettingsModel& model) override;

private:
    ViewEngine& views();
    void after(Duration delay, std::function<void()> work);

    Parts m_parts;
    /// With those for windows and downloads, and those for a recording's end.
    LaterLibraries m_libraries{{"libQt6", "libcrypto.so", "libsndfile.so", "libsoxr.so", "libicu"}};
    std::optional<ViewEngine> m_views;
    Lifetime m_lifetime;
};

} // namespace talvera
