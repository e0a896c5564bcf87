// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"
#include "delivery/FocusNotice.h"
#include "shell/hud/DictationHUDState.h"

#include <QString>

namespace talvera {

/// How a focus notice is shown: what DictationHUDController::showNotice is called with.
struct FocusNoticeText {
    QString text;
    DictationHUDState::NoticeTone tone;
    Duration autoHideAfter;
};

FocusNoticeText focusNoticeText(const FocusNotice& notice);

} // namespace talvera
