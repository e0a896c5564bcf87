// SPDX-License-Identifier: MIT
#include "language/AIAvailabilityState.h"

#include "text/CaseNames.h"

namespace talvera {

namespace {

constexpr CaseNames<AIAvailabilityState, 5> names{{
    {AIAvailabilityState::Available, "available"},
    {AIAvailabilityState::IntelligenceOff, "intelligenceOff"},
    {AIAvailabilityState::DeviceNotEligible, "deviceNotEligible"},
    {AIAvailabilityState::ModelNotReady, "modelNotReady"},
    {AIAvailabilityState::UnsupportedOS, "unsupportedOS"},
}};

} // namespace

QString caseName(AIAvailabilityState state) {
    return nameOf(state, names);
}

std::optional<AIAvailabilityState> aiAvailabilityStateFromCaseName(const QString& name) {
    return caseNamed(name, names);
}

} // namespace talvera
