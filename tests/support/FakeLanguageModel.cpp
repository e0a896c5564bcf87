// SPDX-License-Identifier: MIT
#include "FakeLanguageModel.h"

#include "concurrency/Lifetime.h"

#include <stdexcept>
#include <utility>

namespace talvera::test {

class FakeLanguageModel::Session final : public LanguageModelSession {
public:
    Session(FakeLanguageModel& model, QString instructions, Guardrails guardrails)
        : m_model(model)
        , m_instructions(std::move(instructions))
        , m_guardrails(guardrails) {
        ++m_model.sessions;
    }
    ~Session() override { --m_model.sessions; }

    void streamResponse(const QString& prompt, Listener listener) override {
        if (!m_model.m_actor)
            throw std::logic_error("this language model was made to be asked nothing");
        m_listener = std::make_shared<Listener>(std::move(listener));
        m_answer = m_model.answerTo({m_instructions, prompt, m_guardrails});
        goOn();
    }

private:
    /// The next snapshot in its time, or else the end, in a turn of its own.
    void goOn() {
        auto& actor = *m_model.m_actor;
        if (m_next == m_answer.snapshots.size()) {
            actor.post(m_lifetime.ifAlive([this] { end(); }));
            return;
        }
        auto tell = m_lifetime.ifAlive([this] { tellSnapshot(); });
        if (const auto after = m_answer.snapshots[m_next].after; after > Duration::zero())
            actor.startTimer(after, std::move(tell));
        else
            actor.post(std::move(tell));
    }

    // The listener may destroy the session, and with it what it lies in.
    void tellSnapshot() {
        const auto content = m_answer.snapshots[m_next++].content;
        const auto listener = m_listener;
        goOn();
        listener->onSnapshot(content);
    }
    void end() {
        const auto listener = m_listener;
        if (const auto failure = m_answer.failure)
            listener->onFailed(*failure);
        else
            listener->onFinished();
    }

    FakeLanguageModel& m_model;
    const QString m_instructions;
    const Guardrails m_guardrails;
    std::shared_ptr<Listener> m_listener;
    ModelAnswer m_answer;
    std::size_t m_next = 0;
    Lifetime m_lifetime;
};

std::unique_ptr<LanguageModelSession> FakeLanguageModel::makeSession(const QString& instructions,
                                                                     Guardrails guardrails) {
    return std::make_unique<Session>(*this, instructions, guardrails);
}

ModelAnswer FakeLanguageModel::answerTo(const ModelRequestSeen& request) {
    requests.push_back(request);
    if (!request.isWarmup())
        m_lastAnswer = nextAnswer();
    if (onRequest)
        onRequest(request);
    return request.isWarmup() ? warmupAnswer : m_lastAnswer;
}

ModelAnswer FakeLanguageModel::nextAnswer() {
    if (m_next < m_answers.size())
        return m_answers[m_next++];
    return {{}, LanguageModelError(QStringLiteral("assetsUnavailable"))};
}

} // namespace talvera::test
