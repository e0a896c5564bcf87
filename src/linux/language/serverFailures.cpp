// SPDX-License-Identifier: MIT
#include "linux/language/serverFailures.h"

#include "text/Localization.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace talvera {

namespace {

constexpr int tooManyRequests = 429;
constexpr int unavailable = 503;

} // namespace

LanguageModelError modelIsAway() {
    return LanguageModelError(QStringLiteral("assetsUnavailable"));
}

LanguageModelError modelIsOff() {
    // By this description programs tell the case; the user reads the text that we have for it.
    return LanguageModelError(QStringLiteral("serverGone"), QStringLiteral("Apple Intelligence is off"));
}

LanguageModelError brokenAnswer(const QString& what) {
    return LanguageModelError(QStringLiteral("brokenAnswer: ") + what,
                              localized("ai.failure.broken", "The language model's answer broke off"));
}

LanguageModelError contextExceeded() {
    return LanguageModelError(QStringLiteral("exceededContextWindowSize"));
}

LanguageModelError refusedByModel() {
    return LanguageModelError(QStringLiteral("guardrailViolation"));
}

LanguageModelError failureOfStatus(int status, const QByteArray& body) {
    return failureOfError(QJsonDocument::fromJson(body).object().value(QStringLiteral("error")), status);
}

LanguageModelError failureOfError(const QJsonValue& value, int status) {
    if (value.toString().contains(QStringLiteral("context length"), Qt::CaseInsensitive))
        return contextExceeded();
    const auto error = value.toObject();
    const auto type = error.value(QStringLiteral("type")).toString();
    const auto code = error.value(QStringLiteral("code"));
    if (type == QStringLiteral("exceed_context_size_error"))
        return contextExceeded();
    if (type == QStringLiteral("content_filter") || code.toString() == QStringLiteral("content_filter"))
        return refusedByModel();
    const auto number = code.toInt(status);
    if (number == tooManyRequests)
        return LanguageModelError(QStringLiteral("rateLimited"));
    if (number == unavailable)
        return modelIsAway();
    return brokenAnswer(QStringLiteral("status %1").arg(number));
}

} // namespace talvera
