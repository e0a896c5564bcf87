// SPDX-License-Identifier: MIT
#include "delivery/FocusProtectionMode.h"

namespace talvera {

QString rawValue(FocusProtectionMode mode) {
    switch (mode) {
    case FocusProtectionMode::Reactivate:
        return QStringLiteral("reactivate");
    case FocusProtectionMode::ClipboardOnly:
        return QStringLiteral("clipboardOnly");
    }
    Q_UNREACHABLE();
}

std::optional<FocusProtectionMode> focusProtectionModeFromRawValue(const QString& raw) {
    for (const auto mode : allFocusProtectionModes) {
        if (raw == rawValue(mode))
            return mode;
    }
    return std::nullopt;
}

} // namespace talvera
