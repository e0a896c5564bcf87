// SPDX-License-Identifier: MIT
#pragma once

#include "language/AIAvailabilityState.h"

#include <QSet>
#include <QString>

/// The text tasks of the on-device language model.
namespace talvera::AICleanup {

/// Whether the model takes text in the language `code`; a region in the code plays no part.
bool isSourceSupported(const QString& code, AIAvailabilityState state,
                       const QSet<QString>& supportedLanguageCodes);

} // namespace talvera::AICleanup
