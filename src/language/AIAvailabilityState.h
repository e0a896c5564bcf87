// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace talvera {

/// Whether the on-device language model can be used, and if not, why.
enum class AIAvailabilityState {
    Available,
    IntelligenceOff,   ///< the user has not turned it on
    DeviceNotEligible, ///< this machine cannot run it
    ModelNotReady,     ///< it is still being fetched or prepared
    UnsupportedOS,     ///< the system is too old
};

inline constexpr std::array allAIAvailabilityStates{
    AIAvailabilityState::Available, AIAvailabilityState::IntelligenceOff,
    AIAvailabilityState::DeviceNotEligible, AIAvailabilityState::ModelNotReady,
    AIAvailabilityState::UnsupportedOS};

/// The state's name, as in "deviceNotEligible".
QString caseName(AIAvailabilityState state);

/// The state whose name is exactly `name`, if there is one.
std::optional<AIAvailabilityState> aiAvailabilityStateFromCaseName(const QString& name);

} // namespace talvera
