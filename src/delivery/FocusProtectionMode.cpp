// SPDX-License-Identifier: MIT
#include "delivery/FocusProtectionMode.h"

#include "text/CaseNames.h"

namespace talvera {

namespace {

constexpr CaseNames<FocusProtectionMode, 2> names{{
    {FocusProtectionMode::Reactivate, "reactivate"},
    {FocusProtectionMode::ClipboardOnly, "clipboardOnly"},
}};

} // namespace

QString rawValue(FocusProtectionMode mode) {
    return nameOf(mode, names);
}

std::optional<FocusProtectionMode> focusProtectionModeFromRawValue(const QString& raw) {
    return caseNamed(raw, names);
}

} // namespace talvera
