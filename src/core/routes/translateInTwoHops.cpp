// SPDX-License-Identifier: MIT
#include "core/routes/RouteSteps.h"
#include "core/routes/StreamedAnswer.h"
#include "core/routes/routes.h"
#include "language/AICleanup.h"

namespace talvera {

Task<void> translateInTwoHops(const RouteSteps& steps, const Dictation& dictation) {
    const auto& target = dictation.request.target;
    steps.trace(QStringLiteral("2-hop AI Translate to %1 started (whisperLang=%2, backend=%3).")
                    .arg(target.code, dictation.request.source, steps.backendName()));
    steps.updateHUD(DictationHUDState::Translating{target.displayName});
    const auto pass = co_await steps.recognise(dictation.request, WhisperMode::TranslateToEnglish,
                                               "2-hop stage 1 (Whisper --translate) failed: ");
    if (!pass)
        co_return;
    const auto& english = *pass;
    if (english.isEmpty()) {
        steps.finishDictation(dictation.request.wav);
        co_return;
    }
    steps.trace(QStringLiteral("2-hop stage 1 done: %1 chars English.").arg(countForTrace(english)));
    ModelRequest request{AICleanup::translationInstructions(target.displayName), english,
                         QStringLiteral("2-hop AI Translate done")};
    auto answer = deliverAnswer(steps, dictation, request);
    const auto failure = co_await answer;
    if (!failure)
        co_return;
    steps.trace(
        QStringLiteral("2-hop stage 2 failed: %1. Inserting English fallback.").arg(failure->reason.text()));
    finishAfterFailure(steps, dictation, *failure, english);
}

} // namespace talvera
