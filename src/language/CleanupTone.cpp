// SPDX-License-Identifier: MIT
#include "language/CleanupTone.h"

namespace talvera {

QString rawValue(CleanupTone tone) {
    switch (tone) {
    case CleanupTone::Off:
        return QStringLiteral("off");
    case CleanupTone::Conversational:
        return QStringLiteral("conversational");
    case CleanupTone::Casual:
        return QStringLiteral("casual");
    case CleanupTone::Professional:
        return QStringLiteral("professional");
    }
    Q_UNREACHABLE();
}

std::optional<CleanupTone> cleanupToneFromRawValue(const QString& raw) {
    for (const auto tone : allCleanupTones) {
        if (raw == rawValue(tone))
            return tone;
    }
    return std::nullopt;
}

} // namespace talvera
