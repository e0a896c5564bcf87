// SPDX-License-Identifier: MIT
#include "concurrency/MainActor.h"
#include "core/routes/RouteSteps.h"
#include "core/routes/routes.h"

namespace talvera {

Task<void> translateDirect(const RouteSteps& steps, const Dictation& dictation) {
    const auto& request = dictation.request;
    const auto& actor = steps.parts().actor;
    const auto started = actor.now();
    const auto pass =
        co_await steps.recognise(request, WhisperMode::TranslateToEnglish, "Whisper --translate failed: ");
    if (!pass)
        co_return;
    const auto& text = *pass;
    steps.trace(
        QString::asprintf("[timing] whisper(translate-direct) %.2fs", toSeconds(actor.now() - started)));
    steps.trace(QStringLiteral("[pipeline] whisper translate-direct (%1 chars)").arg(countForTrace(text)));
    if (!text.isEmpty()) {
        steps.record(text, request, true, false, QStringLiteral("none"));
        steps.deliver(dictation, text);
        steps.trace(QStringLiteral("[en-target-direct] typed %1 chars.").arg(countForTrace(text)));
    }
    steps.finishDictation(request.wav);
}

} // namespace talvera
