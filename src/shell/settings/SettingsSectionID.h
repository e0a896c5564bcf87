// SPDX-License-Identifier: MIT
#pragma once

#include "text/CaseNames.h"

namespace talvera {

/// The sections of the settings window, in the order of its sidebar.
enum class SettingsSectionID { General, Hotkey, Language, Ai, Privacy };

template <>
inline constexpr std::array caseNames<SettingsSectionID>{
    CaseName{SettingsSectionID::General, "general"},   CaseName{SettingsSectionID::Hotkey, "hotkey"},
    CaseName{SettingsSectionID::Language, "language"}, CaseName{SettingsSectionID::Ai, "ai"},
    CaseName{SettingsSectionID::Privacy, "privacy"},
};

} // namespace talvera
