// SPDX-License-Identifier: MIT
#pragma once

#include "text/CaseNames.h"

namespace talvera {

/// The user's choice of how text is delivered.
enum class InsertionMode {
    Paste,          ///< always paste
    AutoByDuration, ///< type short dictations, paste long ones
};

template <>
inline constexpr std::array caseNames<InsertionMode>{
    CaseName{InsertionMode::Paste, "paste"},
    CaseName{InsertionMode::AutoByDuration, "autoByDuration"},
};

/// How one delivery is done.
enum class ResolvedMode { Typewriter, Paste };

} // namespace talvera
