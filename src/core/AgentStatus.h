// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"
#include "shell/MenuBarController.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace talvera {

/// What the agent tells other programs of itself. Never a word of what was said.
struct AgentStatus {
    MenuBarController::State state = MenuBarController::State::Idle;
    bool hasMicrophone = false;
    bool canTypeAndWatchKeys = false;
    bool hasModel = false;
    std::optional<WatchResult> hotkey{}; ///< what came of it; nothing where nothing watches keys
    QString spokenLanguage;              ///< a code, or "auto"
    QString targetLanguage;              ///< a code, or "off"
    QStringList lacks{};                 ///< in plain sentences for the user

    /// A dictation can begin, or goes on.
    bool isReady() const { return hasMicrophone && canTypeAndWatchKeys && hasModel; }

    /// One object on one line, see docs/command-line.md.
    QString json() const;
    /// Lines for the user.
    QString text() const;
};

} // namespace talvera
