// SPDX-License-Identifier: MIT
#pragma once

#include "text/CaseNames.h"

namespace talvera {

/// Whether the on-device language model can be used, and if not, why.
enum class AIAvailabilityState {
    Available,
    IntelligenceOff,   ///< the user has not turned it on
    DeviceNotEligible, ///< this machine cannot run it
    ModelNotReady,     ///< it is still being fetched or prepared
    UnsupportedOS,     ///< the system is too old
};

template <>
inline constexpr std::array caseNames<AIAvailabilityState>{
    CaseName{AIAvailabilityState::Available, "available"},
    CaseName{AIAvailabilityState::IntelligenceOff, "intelligenceOff"},
    CaseName{AIAvailabilityState::DeviceNotEligible, "deviceNotEligible"},
    CaseName{AIAvailabilityState::ModelNotReady, "modelNotReady"},
    CaseName{AIAvailabilityState::UnsupportedOS, "unsupportedOS"},
};

} // namespace talvera
