// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace talvera {

/// The user's choice of how text is delivered.
enum class InsertionMode {
    Paste,          ///< always paste
    AutoByDuration, ///< type short dictations, paste long ones
};

inline constexpr std::array allInsertionModes{InsertionMode::Paste, InsertionMode::AutoByDuration};

/// The persisted form.
QString rawValue(InsertionMode mode);

/// The mode whose persisted form is exactly `raw`, if there is one.
std::optional<InsertionMode> insertionModeFromRawValue(const QString& raw);

/// How one delivery is done.
enum class ResolvedMode { Typewriter, Paste };

} // namespace talvera
