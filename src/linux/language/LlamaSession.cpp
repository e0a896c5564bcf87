// SPDX-License-Identifier: MIT
#include "linux/language/LlamaSession.h"

#include "linux/language/LlamaLanguageModel.h"
#include "linux/language/serverFailures.h"

#include <utility>

namespace talvera {

LlamaSession::LlamaSession(LlamaLanguageModel& model, QString instructions)
    : m_model(model)
    , m_question{std::move(instructions), {}} {}

LlamaSession::~LlamaSession() {
    leave();
}

void LlamaSession::streamResponse(const QString& prompt, Listener listener) {
    m_question.prompt = prompt;
    m_listener = std::make_shared<Listener>(std::move(listener));
    m_hasEntered = true;
    m_model.enter(*this);
    awaitServer();
}

void LlamaSession::awaitServer() {
    auto& actor = m_model.m_parts.actor;
    m_patience = actor.startTimer(m_model.m_options.loading, [this] { fail(); });
    actor.post(m_lifetime.ifAlive([this] {
        if (isWaiting())
            m_model.serve(*this);
    }));
}

void LlamaSession::send() {
    if (m_request)
        return;
    m_model.m_parts.actor.cancelTimer(*m_patience);
    m_request = std::make_unique<ServerRequest>(
        m_model.m_parts.actor, m_model.m_options.request,
        Listener{.onSnapshot = [own = m_listener](const QString& content) { own->onSnapshot(content); },
                 .onFinished =
                     [this, own = m_listener] {
                         leave();
                         own->onFinished();
                     },
                 .onFailed = [this](const LanguageModelError& error) { takeFailure(error); }});
    const ModelServer server{{m_model.socket(), 0}, ChatProtocol::Completions, {}, 0};
    m_request->begin(server, m_question);
}

/// A server that has gone, or can't be reached, is noticed by the first that wants something of it. That one
/// gets another server, once.
void LlamaSession::takeFailure(const LanguageModelError& error) {
    if (m_request->cameToNothing() && !std::exchange(m_hasTriedAgain, true)) {
        m_request.reset();
        m_model.endServer();
        awaitServer();
        return;
    }
    leave();
    const auto listener = m_listener;
    listener->onFailed(error);
}

void LlamaSession::fail() {
    leave();
    const auto listener = m_listener;
    listener->onFailed(modelIsAway());
}

void LlamaSession::leave() {
    if (!std::exchange(m_hasEntered, false))
        return;
    m_model.m_parts.actor.cancelTimer(*m_patience);
    m_model.leave(*this);
}

} // namespace talvera
