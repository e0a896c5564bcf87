// SPDX-License-Identifier: MIT
#include "language/AIAvailabilityState.h"

namespace talvera {

QString caseName(AIAvailabilityState state) {
    switch (state) {
    case AIAvailabilityState::Available:
        return QStringLiteral("available");
    case AIAvailabilityState::IntelligenceOff:
        return QStringLiteral("intelligenceOff");
    case AIAvailabilityState::DeviceNotEligible:
        return QStringLiteral("deviceNotEligible");
    case AIAvailabilityState::ModelNotReady:
        return QStringLiteral("modelNotReady");
    case AIAvailabilityState::UnsupportedOS:
        return QStringLiteral("unsupportedOS");
    }
    Q_UNREACHABLE();
}

std::optional<AIAvailabilityState> aiAvailabilityStateFromCaseName(const QString& name) {
    for (const auto state : allAIAvailabilityStates) {
        if (name == caseName(state))
            return state;
    }
    return std::nullopt;
}

} // namespace talvera
