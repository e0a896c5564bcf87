// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/MainActor.h"
#include "platform/language/LanguageModel.h"

#include <QSet>

#include <cstddef>
#include <vector>

namespace talvera::test {

/// One answer of the scripted language model.
struct ModelAnswer {
    struct Snapshot {
        Duration after{}; ///< since the one before, or since the request
        QString content;  ///< the whole answer so far
    };

    std::vector<Snapshot> snapshots;
    std::optional<LanguageModelError> failure; ///< breaks it off behind the last snapshot
};

/// What the model was asked.
struct ModelRequestSeen {
    QString instructions;
    QString prompt;
    LanguageModel::Guardrails guardrails = LanguageModel::Guardrails::Default;

    /// Asked to have the model loaded, rather than for a text.
    bool isWarmup() const { return prompt == QStringLiteral("ok"); }
};

/// A language model that is there or not as the test says, and answers from a script. A request for which
/// there is no answer left fails as that of a model which doesn't come up.
class FakeLanguageModel final : public LanguageModel {
public:
    /// One that is never asked.
    FakeLanguageModel() = default;
    /// One that answers on that actor's clock.
    explicit FakeLanguageModel(MainActor& actor)
        : m_actor(&actor) {}

    std::optional<UnavailableReason> reason = UnavailableReason::DeviceNotEligible;
    QSet<QString> languages;
    bool tellsChanges = false; ///< the test calls tellChange() for each

    /// The answers to what is asked for texts, in order.
    void setAnswers(std::vector<ModelAnswer> answers) {
        m_answers = std::move(answers);
        m_next = 0;
    }
    ModelAnswer warmupAnswer{{{{}, QStringLiteral("ok")}}, {}};

    /// What the last request for a text was answered with.
    const ModelAnswer& lastAnswer() const { return m_lastAnswer; }

    std::vector<ModelRequestSeen> requests;
    std::function<void(const ModelRequestSeen&)> onRequest;
    int preparations = 0;
    int sessions = 0; ///< that are there now

    /// Tells who observes that the reason or the languages have changed.
    void tellChange() { m_changes.set(m_changes.get() + 1); }

    std::optional<UnavailableReason> unavailableReason() override { return reason; }
    QStringList supportedLanguages() override { return languages.values(); }
    Subscription observe(std::function<void()> changed) override {
        return m_changes.observe([changed = std::move(changed)](int) { changed(); });
    }
    bool tellsOfChanges() override { return tellsChanges; }
    void prepare() override { ++preparations; }
    std::unique_ptr<LanguageModelSession> makeSession(const QString& instructions,
                                                      Guardrails guardrails) override;

private:
    class Session;

    ModelAnswer answerTo(const ModelRequestSeen& request);
    ModelAnswer nextAnswer();

    MainActor* m_actor = nullptr;
    std::vector<ModelAnswer> m_answers;
    std::size_t m_next = 0;
    ModelAnswer m_lastAnswer;
    Published<int> m_changes;
};

} // namespace talvera::test
