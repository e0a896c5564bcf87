// SPDX-License-Identifier: MIT
#include "linux/language/ChatAnswer.h"

#include "linux/language/serverFailures.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace talvera {

namespace {

constexpr int seed = 1; // the same words twice for the same text

QJsonObject message(const char* role, const QString& content) {
    return {{QStringLiteral("role"), QLatin1String(role)}, {QStringLiteral("content"), content}};
}

} // namespace

QByteArray chatRequest(const QString& instructions, const QString& prompt) {
    const QJsonObject request{
        {QStringLiteral("messages"), QJsonArray{message("system", instructions), message("user", prompt)}},
        {QStringLiteral("stream"), true},
        {QStringLiteral("seed"), seed},
    };
    return QJsonDocument(request).toJson(QJsonDocument::Compact);
}

void ChatAnswer::take(const QByteArray& event) {
    if (m_hasEnded)
        return;
    const auto document = QJsonDocument::fromJson(event);
    if (!document.isObject()) { // also the mark of the end, which comes behind the reason for it
        fail(brokenAnswer(QStringLiteral("an event that can't be read")));
        return;
    }
    const auto object = document.object();
    if (const auto error = object.value(QStringLiteral("error")); error.isObject()) {
        fail(failureOfError(error.toObject(), 0));
        return;
    }
    const auto choice = object.value(QStringLiteral("choices")).toArray().at(0).toObject();
    const auto delta = choice.value(QStringLiteral("delta")).toObject();
    m_filter.take(delta.value(QStringLiteral("content")).toString());
    if (m_filter.hasSpokenThoughts())
        fail(brokenAnswer(QStringLiteral("thoughts in the answer")));
    else if (m_filter.text().size() > m_mostCharacters)
        fail(brokenAnswer(QStringLiteral("without an end")));
    else if (const auto reason = choice.value(QStringLiteral("finish_reason")); reason.isString())
        takeReason(reason.toString());
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
