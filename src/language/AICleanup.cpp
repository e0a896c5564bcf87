// SPDX-License-Identifier: MIT
#include "language/AICleanup.h"

#include <QStringList>

namespace talvera::AICleanup {

bool isSourceSupported(const QString& code, AIAvailabilityState state,
                       const QSet<QString>& supportedLanguageCodes) {
    if (state != AIAvailabilityState::Available)
        return false;
    const auto pieces = code.split(u'-', Qt::SkipEmptyParts);
    return supportedLanguageCodes.contains(pieces.isEmpty() ? code : pieces.front());
}

} // namespace talvera::AICleanup
