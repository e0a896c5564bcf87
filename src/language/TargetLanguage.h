// SPDX-License-Identifier: MIT
#pragma once

#include "language/AIAvailabilityState.h"

#include <QHashFunctions>
#include <QSet>
#include <QString>

#include <vector>

namespace talvera {

/// A language that the text may come out in, or "off" for the language spoken.
struct TargetLanguage {
    QString code;
    QString displayName;
    bool requiresAI = false; ///< the recogniser can't serve it by itself

    bool operator==(const TargetLanguage&) const = default;

    /// All of them, in display order: first what the recogniser serves, then what takes the language model.
    static const std::vector<TargetLanguage>& all();

    /// The row with exactly this code, else English.
    static const TargetLanguage& byCode(const QString& code);

    /// Whether the user can choose this row now. `isAvailable` is what the caller last heard of the language
    /// model, `state` is what it says when asked again.
    bool isSelectable(bool isAvailable, AIAvailabilityState state,
                      const QSet<QString>& supportedLanguageCodes) const;
};

inline size_t qHash(const TargetLanguage& row, size_t seed = 0) {
    return qHashMulti(seed, row.code, row.displayName, row.requiresAI);
}

} // namespace talvera
