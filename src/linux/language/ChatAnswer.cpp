// SPDX-License-Identifier: MIT
#include "linux/language/ChatAnswer.h"

#include "linux/language/chatProtocol.h"
#include "linux/language/serverFailures.h"

namespace talvera {

void ChatAnswer::take(const QByteArray& event) {
    if (m_hasEnded)
        return;
    const auto piece = readChatPiece(m_server, event);
    if (piece.failure) {
        fail(*piece.failure);
        return;
    }
    m_filter.take(piece.text);
    if (m_filter.hasSpokenThoughts())
        fail(brokenAnswer(QStringLiteral("thoughts in the answer")));
    else if (m_filter.text().size() > m_mostCharacters)
        fail(brokenAnswer(QStringLiteral("without an end")));
    else if (piece.end)
        takeReason(*piece.end);
}

void ChatAnswer::takeEnd() {
    if (!m_hasEnded)
        fail(brokenAnswer(QStringLiteral("cut off")));
}

void ChatAnswer::takeReason(const QString& reason) {
    if (reason == QStringLiteral("stop")) {
        m_filter.takeEnd();
        m_hasEnded = true;
    } else if (reason == QStringLiteral("length")) {
        fail(contextExceeded());
    } else if (reason == QStringLiteral("content_filter")) {
        fail(refusedByModel());
    } else {
        fail(brokenAnswer(QStringLiteral("ended for an unknown reason")));
    }
}

void ChatAnswer::fail(const LanguageModelError& error) {
    m_failure = error;
    m_hasEnded = true;
}

} // namespace talvera
