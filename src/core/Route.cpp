// SPDX-License-Identifier: MIT
#include "core/Route.h"

#include "platform/language/LanguageRecognizer.h"

namespace talvera {

namespace {

constexpr QLatin1String autoDetect("auto");
constexpr QLatin1String english("en");

/// English from something that was transcribed first: is it English already?
Route routeToEnglish(const DictationRequest& request, const QString& transcript,
                     LanguageRecognizer& recognizer, const Trace& trace) {
    const auto resolved = request.source == autoDetect
                              ? recognizer.dominantLanguage(transcript).value_or(QString(autoDetect))
                              : request.source;
    trace(QStringLiteral("[en-target] src=%1 (whisperLang=%2)").arg(resolved, request.source));
    if (resolved != english)
        return Route::SecondPass;
    return request.cleanup ? Route::AICleanup : Route::Plain;
}

} // namespace

bool translatesDirectly(const DictationRequest& request) {
    return request.target.code == english && request.source != english && !request.cleanup;
}

Route chooseRoute(const DictationRequest& request, const QString& transcript, LanguageRecognizer& recognizer,
                  const Trace& trace) {
    const auto& target = request.target;
    if (request.useAI)
        return Route::AITranslate;
    if (target.requiresAI && request.aiAvailable) {
        trace(
            QStringLiteral("Target %1 needs AI; source rejected — using 2-hop translate.").arg(target.code));
        return Route::TwoHopTranslate;
    }
    if (target.requiresAI) {
        trace(
            QStringLiteral("Target %1 needs AI but unavailable (Apple Intelligence is off) — falling back to "
                           "Whisper --translate.")
                .arg(target.code));
        return Route::WhisperFallback;
    }
    if (target.code == english)
        return routeToEnglish(request, transcript, recognizer, trace);
    return request.cleanup ? Route::AICleanup : Route::Plain;
}

} // namespace talvera
