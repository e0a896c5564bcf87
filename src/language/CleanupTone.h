// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <optional>

namespace talvera {

/// In which register a transcript is cleaned up.
enum class CleanupTone {
    Off,            ///< clean-up doesn't run
    Conversational, ///< as it was said
    Casual,
    Professional,
};

inline constexpr std::array allCleanupTones{CleanupTone::Off, CleanupTone::Conversational,
                                            CleanupTone::Casual, CleanupTone::Professional};

/// The persisted form.
QString rawValue(CleanupTone tone);

/// The tone whose persisted form is exactly `raw`, if there is one.
std::optional<CleanupTone> cleanupToneFromRawValue(const QString& raw);

} // namespace talvera
