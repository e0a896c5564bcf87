// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "platform/language/LanguageModelSession.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

/// The language model on this machine, which can clean up and translate text. Main thread only; every call
/// returns at once.
class LanguageModel {
public:
    enum class UnavailableReason {
        IntelligenceOff,   ///< the user has not turned it on, or has given it no model
        DeviceNotEligible, ///< this machine can't run it
        ModelNotReady,     ///< it is being fetched or prepared, and not by us
    };

    /// What the model may be asked to write.
    enum class Guardrails {
        Default,
        PermissiveContentTransformations, ///< also what it would not say of itself, if the input says it
    };

    virtual ~LanguageModel() = default;

    /// Why the model can't be used now; nothing when it can, if need be after loading, for which a request
    /// waits.
    virtual std::optional<UnavailableReason> unavailableReason() = 0;

    /// The languages that it takes, as tags such as "en", "pt-BR" or "zh-Hans"; empty while it isn't known.
    virtual QStringList supportedLanguages() = 0;

    /// Calls `changed` in a turn of its own whenever one of the two above has become another one.
    [[nodiscard]] virtual Subscription observe(std::function<void()> changed) = 0;

    /// When a model is put there or becomes ready, observers hear of it at once, or prepare() finds it out.
    /// Else only another question does.
    virtual bool tellsOfChanges() = 0;

    /// A request is likely to come soon: the model may begin to load, and look whether it is still there.
    virtual void prepare() = 0;

    /// A session for one request. Also of a model that isn't available: the request fails then.
    virtual std::unique_ptr<LanguageModelSession> makeSession(const QString& instructions,
                                                              Guardrails guardrails) = 0;
};

} // namespace talvera
