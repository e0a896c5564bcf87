// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace talvera {

/// A language that the user may say. The codes are the recogniser's own, with "auto" for leaving it to find
/// out; they are another vocabulary than those of TargetLanguage and AppLanguage.
struct Language {
    QString code;
    QString displayName;

    bool operator==(const Language&) const = default;

    /// All of them, in display order.
    static const std::vector<Language>& all();

    /// The row with exactly this code, else "auto".
    static const Language& byCode(const QString& code);
};

} // namespace talvera
