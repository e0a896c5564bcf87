// SPDX-License-Identifier: MIT
#include "delivery/InsertionMode.h"

namespace talvera {

QString rawValue(InsertionMode mode) {
    switch (mode) {
    case InsertionMode::Paste:
        return QStringLiteral("paste");
    case InsertionMode::AutoByDuration:
        return QStringLiteral("autoByDuration");
    }
    Q_UNREACHABLE();
}

std::optional<InsertionMode> insertionModeFromRawValue(const QString& raw) {
    for (const auto mode : allInsertionModes) {
        if (raw == rawValue(mode))
            return mode;
    }
    return std::nullopt;
}

} // namespace talvera
