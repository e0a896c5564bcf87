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
    virtual ~LanguageModel() = default;

    /// Why the model can't be used now, as the machine words it; nothing when it can.
    virtual std::optional<QString> unavailableReason() = 0;

    /// The languages that it takes, by their codes without a region.
    virtual QSet<QString> supportedLanguageCodes() = 0;
};

} // namespace talvera
