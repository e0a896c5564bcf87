// SPDX-License-Identifier: MIT
#include "language/unavailableReason.h"

namespace talvera {

LanguageModel::UnavailableReason unavailableReasonFromWords(const QString& words) {
    const auto says = [&words](const char* reason) {
        return words.contains(QLatin1String(reason), Qt::CaseInsensitive);
    };
    if (says("appleIntelligenceNotEnabled"))
        return LanguageModel::UnavailableReason::IntelligenceOff;
    if (says("deviceNotEligible"))
        return LanguageModel::UnavailableReason::DeviceNotEligible;
    if (says("modelNotReady"))
        return LanguageModel::UnavailableReason::ModelNotReady;
    return LanguageModel::UnavailableReason::DeviceNotEligible;
}

} // namespace talvera
