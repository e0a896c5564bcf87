// SPDX-License-Identifier: MIT
#pragma once

#include "text/CaseNames.h"

namespace talvera {

/// What to do when the user has moved to another application while the one that the text is for still runs.
enum class FocusProtectionMode {
    Reactivate,    ///< bring it back and deliver there
    ClipboardOnly, ///< leave the focus alone and put the text on the clipboard
};

template <>
inline constexpr std::array caseNames<FocusProtectionMode>{
    CaseName{FocusProtectionMode::Reactivate, "reactivate"},
    CaseName{FocusProtectionMode::ClipboardOnly, "clipboardOnly"},
};

} // namespace talvera
