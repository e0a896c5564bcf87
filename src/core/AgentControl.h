// SPDX-License-Identifier: MIT
#pragma once

#include "core/CommandedHotkey.h"
#include "core/LaunchRequest.h"

#include <QString>

#include <functional>
#include <optional>

namespace talvera {

class AppDelegate;
class AppSettings;
class Console;
class HotkeyManager;
class MenuBarController;
class ModelStore;
class ReadinessMonitor;
struct AgentCommand;
struct AgentStatus;

/// The agent as other programs of the user command it: those that a key binding starts, and a second start of
/// the program. Main thread only.
class AgentControl {
public:
    struct Parts {
        AppDelegate& delegate;
        const AppSettings& settings;
        const ModelStore& models;
        const MenuBarController& menuBar;
        HotkeyManager& hotkey;
        ReadinessMonitor& readiness;
        Console& console;
        std::function<void(std::optional<SettingsSectionID>)> openSettings;
    };

    /// The parts outlive it.
    explicit AgentControl(const Parts& parts);

    /// Does that and answers with what there is to tell of it. `begun`: see CommandedHotkey.
    QString obey(const AgentCommand& command, CommandedHotkey::Begun begun);

    /// The user has started the program a second time.
    void startedAgain(const LaunchRequest& request);

private:
    AgentStatus status();

    const Parts m_parts;
};

} // namespace talvera
