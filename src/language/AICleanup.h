// SPDX-License-Identifier: MIT
#pragma once

#include "language/AIAvailabilityState.h"
#include "language/AIFailure.h"
#include "language/CleanupTone.h"

#include <QSet>
#include <QString>

#include <exception>
#include <memory>

namespace talvera {

class LanguageModel;
class MainActor;
class PartStream;

/// The text tasks of the on-device language model. Each is a text of instructions and an input, and its
/// answer comes in parts, so that it can be typed while it is being written. Nothing is kept between two
/// requests. Main thread only.
namespace AICleanup {

/// The model can be used now.
bool isAvailable(LanguageModel& model);

/// The languages that the model takes, by their codes without a region.
QSet<QString> supportedLanguageCodes(LanguageModel& model);

/// Whether the model takes text in the language `code`; a region in the code plays no part.
bool isSourceSupported(const QString& code, AIAvailabilityState state,
                       const QSet<QString>& supportedLanguageCodes);

/// What the model is told that is to clean a transcript up in its own language.
QString cleanupInstructions(CleanupTone tone);

/// What the model is told that is to translate a transcript. `language` is the name of the target language.
QString translationInstructions(const QString& language);

/// Asks the model and gives its answer as it comes. `permissive` lets it write what it would not say of
/// itself.
std::unique_ptr<PartStream> stream(MainActor& actor, LanguageModel& model, const QString& instructions,
                                   const QString& input, bool permissive);

/// What an error means that reading the stream has thrown.
AIFailure classify(const std::exception& error);

} // namespace AICleanup

} // namespace talvera
