// SPDX-License-Identifier: MIT
#include "linux/language/ServedSession.h"

#include "concurrency/MainActor.h"
#include "linux/language/serverFailures.h"

#include <utility>

namespace talvera {

ServedSession::ServedSession(Parts parts, QString instructions)
    : m_parts(std::move(parts))
    , m_question{std::move(instructions), {}} {}

void ServedSession::streamResponse(const QString& prompt, Listener listener) {
    m_question.prompt = prompt;
    m_listener = std::make_shared<Listener>(std::move(listener));
    m_parts.actor.post(m_lifetime.ifAlive([this] { ask(); }));
}

void ServedSession::ask() {
    if (const auto refusal = m_parts.refusal()) {
        const auto listener = m_listener;
        listener->onFailed(*refusal);
        return;
    }
    m_request = std::make_unique<ServerRequest>(
        m_parts.actor, m_parts.limits,
        Listener{.onSnapshot = [own = m_listener](const QString& content) { own->onSnapshot(content); },
                 .onFinished = [own = m_listener] { own->onFinished(); },
                 .onFailed = [this](const LanguageModelError& error) { takeFailure(error); }});
    m_request->begin(m_parts.server, m_question);
}

/// Of a server that can't be reached it isn't to be said that it loads.
void ServedSession::takeFailure(const LanguageModelError& error) {
    const auto listener = m_listener;
    const auto failure = m_request->hasBeenReached() ? error : modelIsOff();
    m_parts.onFailure();
    listener->onFailed(failure);
}

} // namespace talvera
