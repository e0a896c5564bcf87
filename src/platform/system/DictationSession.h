// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"

#include <QString>

#include <cstdint>

namespace talvera {

/// The record of one dictation: how much was said, never what.
struct DictationSession {
    WallTime timestamp;              ///< when it was recorded
    double audioDuration = 0;        ///< seconds
    std::int64_t wordCount = 0;      ///< what stands between runs of white space
    std::int64_t characterCount = 0; ///< as readers see them
    QString languageCode;            ///< the language that the recogniser was told
    bool translateEnabled = false;   ///< there was a target language
    bool polishEnabled = false;      ///< clean-up was asked for
    QString polishBackend;           ///< what did it, or "none"

    bool operator==(const DictationSession&) const = default;
};

} // namespace talvera
