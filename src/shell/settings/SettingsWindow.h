// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "shell/FramedWindow.h"
#include "shell/settings/SettingsSectionID.h"

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class MainActor;
class SettingsModel;

/// Owns the settings window and what it shows: both are made when it is opened, and gone when the user closes
/// it. Main thread only.
class SettingsWindow {
public:
    /// What is made whenever the window is opened.
    struct Makers {
        std::function<std::unique_ptr<SettingsModel>()> model;
        std::function<std::unique_ptr<FramedWindow>(SettingsModel&)> window;
    };

    /// The actor outlives it.
    SettingsWindow(MainActor& actor, Makers make);
    ~SettingsWindow();
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;

    /// Brings the window up, or to the front. A new one begins with the first section, unless another one is
    /// asked for.
    void show(std::optional<SettingsSectionID> section = {});

    /// The notification "TalveraSettingsSwitchToSection": an open window shows that section.
    void switchToSection(SettingsSectionID section);

    /// What the open window shows; null while there is none.
    SettingsModel* model() { return m_open ? m_open->model.get() : nullptr; }

private:
    struct Open {
        std::unique_ptr<SettingsModel> model;
        std::unique_ptr<FramedWindow> window; ///< goes before what it shows
    };

    void close();

    MainActor& m_actor;
    Makers m_make;
    std::unique_ptr<Open> m_open;
    std::unique_ptr<Open> m_closed; ///< until the turn that ends it
    Lifetime m_lifetime;
};

} // namespace talvera
