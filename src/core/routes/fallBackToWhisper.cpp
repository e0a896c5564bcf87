// SPDX-License-Identifier: MIT
#include "core/routes/RouteSteps.h"
#include "core/routes/routes.h"
#include "text/Localization.h"

namespace talvera {

Task<void> fallBackToWhisper(const RouteSteps& steps, const Dictation& dictation) {
    using Tone = DictationHUDState::NoticeTone;
    const auto& request = dictation.request;
    const auto why =
        QStringLiteral("(originalTarget=%1, reason=Apple Intelligence is off)").arg(request.target.code);
    steps.trace(QStringLiteral("Running Whisper --translate fallback %1.").arg(why));
    steps.updateHUD(DictationHUDState::Transcribing{});
    const auto pass =
        co_await steps.recognise(request, WhisperMode::TranslateToEnglish, "Whisper fallback also failed: ");
    if (!pass)
        co_return;
    if (const auto& text = *pass; !text.isEmpty()) {
        steps.deliver(dictation, text);
        steps.showNotice(localized("hud.translate.whisperFallback",
                                   "Whisper translation — Apple Intelligence unavailable"),
                         Tone::Info);
        steps.trace(QStringLiteral("Fallback typed %1 chars in English %2.").arg(countForTrace(text), why));
    } else {
        steps.showNotice(localized("dictation.nothingRecognized", "Nothing recognized"), Tone::Warn);
    }
    steps.finishBesideNotice(request.wav);
}

} // namespace talvera
