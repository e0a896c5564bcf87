// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace talvera {

/// A language of the interface itself. The code names a localisation; "system" means the session's own.
struct AppLanguage {
    QString code;
    QString nativeName; ///< shown as it stands; empty for "system", whose name is a localised text

    bool operator==(const AppLanguage&) const = default;

    /// All of them, in display order.
    static const std::vector<AppLanguage>& all();

    /// The row with exactly this code, else "system".
    static const AppLanguage& byCode(const QString& code);
};

} // namespace talvera
