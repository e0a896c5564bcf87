// SPDX-License-Identifier: MIT
#include "linux/language/ServerInquiry.h"

#include <utility>

namespace talvera {

namespace {

constexpr qsizetype longestBody = 1 << 20;

} // namespace

ServerInquiry::ServerInquiry(MainActor& actor, Question question,
                             std::function<void(const Answer& answer)> onAnswer)
    : m_actor(actor)
    , m_question(std::move(question))
    , m_onAnswer(std::move(onAnswer)) {
    m_actor.post(m_lifetime.ifAlive([this] { begin(); }));
}

ServerInquiry::~ServerInquiry() {
    if (m_timer)
        m_actor.cancelTimer(*m_timer);
}

void ServerInquiry::begin() {
    m_timer = m_actor.startTimer(m_question.patience, [this] {
        m_timer.reset();
        tell();
    });
    m_connection = std::make_unique<ServerConnection>(
        m_question.address, ServerConnection::Listener{.onConnected = [this] { send(); },
                                                       .onReadable = [this] { receive(); },
                                                       .onEnded = [this] { takeEndOfConnection(); }});
    m_connection->open();
}

void ServerInquiry::send() {
    m_isConnected = true;
    m_connection->write(m_question.request);
}

void ServerInquiry::receive() {
    using State = HttpResponseReader::State;
    while (m_response.state() == State::Open && m_body.size() <= longestBody) {
        const auto bytes = m_connection->read();
        if (bytes.isEmpty())
            return;
        m_body += m_response.take(bytes);
    }
    tell();
}

void ServerInquiry::takeEndOfConnection() {
    const auto token = m_lifetime.token();
    if (m_isConnected)
        receive(); // what came before the end
    if (!token.isAlive() || !m_onAnswer)
        return;
    m_response.takeEnd();
    tell();
}

void ServerInquiry::tell() {
    if (!m_onAnswer)
        return;
    if (m_timer)
        m_actor.cancelTimer(*m_timer);
    m_timer.reset();
    m_connection.reset();
    const bool isWhole =
        m_response.state() == HttpResponseReader::State::Whole && m_body.size() <= longestBody;
    const auto answer = isWhole ? Answer{m_response.status(), m_body} : Answer{};
    const auto onAnswer = std::exchange(m_onAnswer, nullptr);
    onAnswer(answer);
}

} // namespace talvera
