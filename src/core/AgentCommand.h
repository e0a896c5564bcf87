// SPDX-License-Identifier: MIT
#pragma once

#include "shell/settings/SettingsSectionID.h"
#include "text/CaseNames.h"

#include <QStringList>

#include <optional>

namespace talvera {

/// What another program of the user, such as one that a desktop's key binding starts, may have a running
/// agent do.
struct AgentCommand {
    enum class Verb {
        Press,     ///< the hotkey goes down
        Release,   ///< the hotkey goes up
        Toggle,    ///< begins a dictation or ends the one that is recorded, in tap mode or not
        Translate, ///< switches translation on or off
        Panel,     ///< opens the panel
        Settings,  ///< opens the settings
        Status,    ///< tells what the agent does
    };

    Verb verb = Verb::Status;
    bool asJson = false;                        ///< of the status
    std::optional<SettingsSectionID> section{}; ///< of the settings

    /// The command of these words, e.g. "status" "--json" or "settings" "hotkey"; nothing when they are none.
    static std::optional<AgentCommand> of(const QStringList& words);
    QStringList words() const;

    bool operator==(const AgentCommand&) const = default;
};

template <>
inline constexpr std::array caseNames<AgentCommand::Verb>{
    CaseName{AgentCommand::Verb::Press, "press"},   CaseName{AgentCommand::Verb::Release, "release"},
    CaseName{AgentCommand::Verb::Toggle, "toggle"}, CaseName{AgentCommand::Verb::Translate, "translate"},
    CaseName{AgentCommand::Verb::Panel, "panel"},   CaseName{AgentCommand::Verb::Settings, "settings"},
    CaseName{AgentCommand::Verb::Status, "status"}};

} // namespace talvera
