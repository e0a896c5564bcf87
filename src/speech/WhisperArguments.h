// SPDX-License-Identifier: MIT
#pragma once

#include "speech/WhisperMode.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace talvera {

/// The recording's path without its last extension: the tool appends ".txt" to it.
QString outputBase(const QString& wav);

/// How many seconds a WAV file of `bytes` bytes holds. The file itself is not looked at.
double wavDurationSeconds(qint64 bytes);

/// Whether a clip is decoded greedily, and once: the command line depends on a recording's length in this
/// alone. An unknown length counts as long.
bool isShortClip(std::optional<double> seconds);

/// The sentence that shows the decoder the punctuation that we want; nothing for most languages. The look-up
/// is by the exact code.
std::optional<QString> defaultPrompt(WhisperMode mode, const QString& language);

/// The recognition tool's command line. `duration` is in seconds, absent when unknown. An absent `prompt`
/// stands for the default one, an empty prompt for none at all.
QStringList whisperArguments(const QString& wav, const QString& model, std::optional<double> duration,
                             WhisperMode mode, const QString& language, const std::optional<QString>& prompt);

} // namespace talvera
