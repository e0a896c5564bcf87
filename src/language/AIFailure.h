// SPDX-License-Identifier: MIT
#pragma once

#include "text/CaseNames.h"

#include <QString>

namespace talvera {

/// Why the language model has not done what it was asked for, as far as it concerns the user.
struct AIFailure {
    enum class Case {
        UnsupportedLanguage,
        Blocked, ///< the model would not say that
        TooLong,
        RateLimited,
        ModelLoading,
        Off,
        Other,
    };

    Case kind = Case::Other;
    QString message; ///< of Other: the error's own words

    bool operator==(const AIFailure&) const = default;

    /// What the user reads.
    QString text() const;
};

template <>
inline constexpr std::array caseNames<AIFailure::Case>{
    CaseName{AIFailure::Case::UnsupportedLanguage, "unsupportedLanguage"},
    CaseName{AIFailure::Case::Blocked, "blocked"},
    CaseName{AIFailure::Case::TooLong, "tooLong"},
    CaseName{AIFailure::Case::RateLimited, "rateLimited"},
    CaseName{AIFailure::Case::ModelLoading, "modelLoading"},
    CaseName{AIFailure::Case::Off, "off"},
    CaseName{AIFailure::Case::Other, "other"},
};

} // namespace talvera
