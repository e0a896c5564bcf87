// SPDX-License-Identifier: MIT
#pragma once

#include "text/CaseNames.h"

namespace talvera {

/// In which register a transcript is cleaned up.
enum class CleanupTone {
    Off,            ///< clean-up doesn't run
    Conversational, ///< as it was said
    Casual,
    Professional,
};

template <>
inline constexpr std::array caseNames<CleanupTone>{
    CaseName{CleanupTone::Off, "off"},
    CaseName{CleanupTone::Conversational, "conversational"},
    CaseName{CleanupTone::Casual, "casual"},
    CaseName{CleanupTone::Professional, "professional"},
};

} // namespace talvera
