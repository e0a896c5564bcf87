// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"
#include "shell/hud/DictationHUDState.h"

#include <QString>

namespace talvera {

/// The one line that the HUD shows in `state`; empty where it shows none. With `tapToToggle` the hotkey is
/// not held while the user speaks.
QString hudLine(const DictationHUDState& state, bool tapToToggle);

/// From which language to which, such as "AUTO → PT"; empty while nothing is translated.
QString languageIndicator(const QString& sourceLanguageCode, const QString& targetLanguageCode);

/// Minutes and whole seconds, such as "00:07" and "62:05". Before the start it is "00:00".
QString recordingTime(Duration elapsed);

/// What the permission card says.
struct PermissionCardTexts {
    QString title;
    QString subtitle;
    QString action;
    QString dismiss;
    QString symbol; ///< the name of what is missing
};

PermissionCardTexts permissionCardTexts(DictationHUDState::PermissionKind kind);

} // namespace talvera
