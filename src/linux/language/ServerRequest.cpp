// SPDX-License-Identifier: MIT
#include "linux/language/ServerRequest.h"

#include "linux/language/serverFailures.h"

#include <algorithm>
#include <utility>

namespace talvera {

namespace {

constexpr int success = 200;
constexpr qsizetype longestError = 1 << 16;

/// More than any model makes of a text that it cleans up or translates.
qsizetype mostCharactersFor(const QString& prompt) {
    constexpr qsizetype least = 4000;
    constexpr qsizetype perCharacter = 8;
    return std::max(least, prompt.size() * perCharacter);
}

} // namespace

ServerRequest::ServerRequest(MainActor& actor, Limits limits, LanguageModelSession::Listener listener)
    : m_actor(actor)
    , m_limits(limits)
    , m_listener(std::make_shared<LanguageModelSession::Listener>(std::move(listener))) {}

ServerRequest::~ServerRequest() {
    stopTimers();
}

void ServerRequest::begin(const ModelServer& server, const ChatQuestion& question) {
    m_request = chatRequest(server, question);
    m_events.emplace(server.protocol == ChatProtocol::Ollama ? EventStreamReader::Form::Lines
                                                             : EventStreamReader::Form::ServerSentEvents);
    m_answer.emplace(mostCharactersFor(question.prompt), server);
    m_actor.post(m_lifetime.ifAlive([this, address = server.address] { connectTo(address); }));
}

void ServerRequest::connectTo(const ServerAddress& address) {
    m_connection = std::make_unique<ServerConnection>(
        address, ServerConnection::Listener{.onConnected = [this] { send(); },
                                            .onReadable = [this] { receive(); },
                                            .onEnded = [this] { takeEndOfConnection(); }});
    m_whole = m_actor.startTimer(m_limits.whole,
                                 [this] { fail(brokenAnswer(QStringLiteral("it took too long"))); });
    awaitMore();
    m_connection->open();
}

void ServerRequest::send() {
    m_hasBeenReached = true;
    m_connection->write(std::exchange(m_request, {}));
}

/// The listener may destroy this object at each snapshot.
void ServerRequest::receive() {
    const auto token = m_lifetime.token();
    while (token.isAlive() && !m_hasEnded) {
        const auto bytes = m_connection->read();
        if (bytes.isEmpty())
            return;
        m_received += bytes.size();
        awaitMore();
        if (m_received > m_limits.bytes)
            fail(brokenAnswer(QStringLiteral("without an end")));
        else
            takeBody(m_response.take(bytes));
    }
}

void ServerRequest::takeBody(const QByteArray& bytes) {
    if (m_response.status() != success) {
        m_errorBody += bytes.left(longestError - m_errorBody.size());
        if (m_response.state() == HttpResponseReader::State::Broken)
            fail(brokenAnswer(QStringLiteral("no answer over HTTP")));
        else if (m_response.state() == HttpResponseReader::State::Whole)
            fail(failureOfStatus(m_response.status(), m_errorBody));
        return;
    }
    for (const auto& event : m_events->take(bytes))
        m_answer->take(event);
    if (m_response.state() == HttpResponseReader::State::Whole)
        m_answer->takeEnd();
    const auto token = m_lifetime.token();
    tellText(); // also what came just before the answer breaks
    if (!token.isAlive())
        return;
    if (m_events->isTooLong() || m_response.state() == HttpResponseReader::State::Broken)
        fail(brokenAnswer(QStringLiteral("what came can't be read")));
    else if (m_answer->hasEnded())
        end();
}

/// The listener may destroy this object.
void ServerRequest::tellText() {
    if (m_answer->text() == m_told)
        return;
    m_told = m_answer->text();
    const auto listener = m_listener;
    const auto text = m_told;
    listener->onSnapshot(text);
}

void ServerRequest::takeEndOfConnection() {
    const auto token = m_lifetime.token();
    if (m_hasBeenReached)
        receive(); // what came before the end
    if (!token.isAlive() || m_hasEnded)
        return;
    m_cameToNothing = m_received == 0;
    if (!m_hasBeenReached) {
        fail(modelIsAway());
        return;
    }
    m_response.takeEnd();
    if (m_response.status() != 0 && m_response.status() != success)
        fail(failureOfStatus(m_response.status(), m_errorBody));
    else
        fail(brokenAnswer(QStringLiteral("the connection ended")));
}

void ServerRequest::awaitMore() {
    if (m_silence)
        m_actor.cancelTimer(*m_silence);
    m_silence =
        m_actor.startTimer(m_limits.silence, [this] { fail(brokenAnswer(QStringLiteral("silence"))); });
}

void ServerRequest::stopTimers() {
    for (auto* timer : {&m_silence, &m_whole}) {
        if (*timer)
            m_actor.cancelTimer(**timer);
        timer->reset();
    }
}

void ServerRequest::fail(const LanguageModelError& error) {
    stopTimers();
    m_connection.reset();
    m_hasEnded = true;
    const auto listener = m_listener;
    listener->onFailed(error);
}

void ServerRequest::end() {
    if (const auto failure = m_answer->failure()) {
        fail(*failure);
        return;
    }
    stopTimers();
    m_connection.reset();
    m_hasEnded = true;
    const auto listener = m_listener;
    listener->onFinished();
}

} // namespace talvera
