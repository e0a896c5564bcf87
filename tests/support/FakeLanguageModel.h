// SPDX-License-Identifier: MIT
#pragma once

#include "platform/language/LanguageModel.h"

namespace talvera::test {

/// A language model that is there or not as the test says.
class FakeLanguageModel final : public LanguageModel {
public:
    std::optional<UnavailableReason> reason = UnavailableReason::DeviceNotEligible;
    QSet<QString> languages;

    std::optional<UnavailableReason> unavailableReason() override { return reason; }
    QSet<QString> supportedLanguageCodes() override { return languages; }
};

} // namespace talvera::test
