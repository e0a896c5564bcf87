// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// What the recognition tool is asked for.
enum class WhisperMode { Transcribe, TranslateToEnglish };

/// The mode's name in log lines.
inline QString logWord(WhisperMode mode) {
    return mode == WhisperMode::Transcribe ? QStringLiteral("transcribe") : QStringLiteral("translate");
}

} // namespace talvera
