// SPDX-License-Identifier: MIT
#pragma once

#include <QSet>
#include <QString>

#include <optional>

namespace talvera {

/// The language model on this machine, which can clean up and translate text. Main thread only; every call
/// returns at once.
class LanguageModel {
public:
    enum class UnavailableReason {
        IntelligenceOff,   ///< the user has not turned it on, or has given it no model
        DeviceNotEligible, ///< this machine can't run it
        ModelNotReady,     ///< it is still being fetched or prepared
    };

    virtual ~LanguageModel() = default;

    /// Why the model can't be used now; nothing when it can.
    virtual std::optional<UnavailableReason> unavailableReason() = 0;

    /// The languages that it takes, by their codes without a region.
    virtual QSet<QString> supportedLanguageCodes() = 0;
};

} // namespace talvera
