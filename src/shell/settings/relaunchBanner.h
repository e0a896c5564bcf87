// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace talvera {

/// Whether the interface would speak another language after a new start: `current` is the one that it speaks,
/// `selected` the user's choice, "system" for the session's own, and `preferred` the first of those; where
/// one of the two is missing it is English. Languages are named as "de" or "pt-BR".
bool relaunchBanner(const std::optional<QString>& current, const QString& selected,
                    const std::optional<QString>& preferred);

} // namespace talvera
