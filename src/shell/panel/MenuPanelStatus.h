// SPDX-License-Identifier: MIT
#pragma once

#include "shell/MenuBarController.h"

#include <QString>

#include <optional>

namespace talvera {

/// What stands at the head of the panel, and what the item in the tray says of itself.
QString statusTitle(MenuBarController::State state);

/// The line below it. At rest the name of the hotkey follows it, and `tapToToggle` decides how that is used.
QString statusSubtitle(MenuBarController::State state, const std::optional<QString>& lastErrorMessage,
                       bool tapToToggle);

/// What a screen reader says in place of the dot that shows the state. At rest it isn't ready to record while
/// something is missing.
QString orbLabel(MenuBarController::State state, bool isReady);

} // namespace talvera
