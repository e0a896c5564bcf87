// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace talvera {

/// What to do when the user has moved to another application while the one that the text is for still runs.
enum class FocusProtectionMode {
    Reactivate,    ///< bring it back and deliver there
    ClipboardOnly, ///< leave the focus alone and put the text on the clipboard
};

inline constexpr std::array allFocusProtectionModes{FocusProtectionMode::Reactivate,
                                                    FocusProtectionMode::ClipboardOnly};

/// The persisted form.
QString rawValue(FocusProtectionMode mode);

/// The mode whose persisted form is exactly `raw`, if there is one.
std::optional<FocusProtectionMode> focusProtectionModeFromRawValue(const QString& raw);

} // namespace talvera
