// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/LanguageModel.h"

namespace talvera {

/// A machine without a language model.
class NoLanguageModel final : public LanguageModel {
public:
    std::optional<UnavailableReason> unavailableReason() override {
        return UnavailableReason::DeviceNotEligible;
    }
    QSet<QString> supportedLanguageCodes() override { return {}; }
};

} // namespace talvera
