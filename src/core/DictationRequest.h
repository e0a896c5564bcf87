// SPDX-License-Identifier: MIT
#pragma once

#include "delivery/InsertionMode.h"
#include "language/TargetLanguage.h"

#include <QString>

namespace talvera {

/// What a dictation is to be done with, frozen at the release of the key: settings that change later don't
/// touch it.
struct DictationRequest {
    TargetLanguage target;
    QString source; ///< a Language code; may be "auto"
    bool cleanup = false;
    QString wav; ///< path of the recording
    double audioSeconds = 0;
    ResolvedMode mode = ResolvedMode::Paste;
    bool useAI = false;       ///< the language model takes the text to the target in one step
    bool aiAvailable = false; ///< the language model could be used at release
};

} // namespace talvera
