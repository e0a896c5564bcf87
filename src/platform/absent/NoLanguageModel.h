// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "platform/language/LanguageModel.h"

#include <utility>

namespace talvera {

/// A machine without a language model.
class NoLanguageModel final : public LanguageModel {
public:
    explicit NoLanguageModel(MainActor& actor)
        : m_actor(actor) {}

    std::optional<UnavailableReason> unavailableReason() override {
        return UnavailableReason::DeviceNotEligible;
    }
    QStringList supportedLanguages() override { return {}; }
    Subscription observe(std::function<void()>) override { return {}; }
    void prepare() override {}
    std::unique_ptr<LanguageModelSession> makeSession(const QString&, Guardrails) override {
        return std::make_unique<NoSession>(m_actor);
    }

private:
    /// A request that nothing answers.
    class NoSession final : public LanguageModelSession {
    public:
        explicit NoSession(MainActor& actor)
            : m_actor(actor) {}

        void streamResponse(const QString&, Listener listener) override {
            m_actor.post(m_lifetime.ifAlive([fail = std::move(listener.onFailed)] {
                fail(LanguageModelError(QStringLiteral("assetsUnavailable"),
                                        QStringLiteral("there is no language model")));
            }));
        }

    private:
        MainActor& m_actor;
        Lifetime m_lifetime;
    };

    MainActor& m_actor;
};

} // namespace talvera
