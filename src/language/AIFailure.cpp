// SPDX-License-Identifier: MIT
#include "language/AIFailure.h"

#include "text/Localization.h"

namespace talvera {

QString AIFailure::text() const {
    switch (kind) {
    case Case::UnsupportedLanguage:
        return localized("ai.failure.unsupportedLanguage",
                         "Spoken language not supported by Apple Intelligence — try target=English");
    case Case::Blocked:
        return localized("ai.failure.blocked", "Blocked by content policy");
    case Case::TooLong:
        return localized("ai.failure.tooLong", "Dictation too long for AI — try shorter");
    case Case::RateLimited:
        return localized("ai.failure.rateLimited", "AI rate limited — try again in a moment");
    case Case::ModelLoading:
        return localized("ai.failure.modelLoading", "Apple Intelligence model still loading");
    case Case::Off:
        return localized("ai.failure.off", "Apple Intelligence is off");
    case Case::Other:
        break;
    }
    return message;
}

} // namespace talvera
