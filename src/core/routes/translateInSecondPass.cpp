// SPDX-License-Identifier: MIT
#include "core/routes/RouteSteps.h"
#include "core/routes/routes.h"

namespace talvera {

Task<void> translateInSecondPass(const RouteSteps& steps, const Dictation& dictation,
                                 const QString& transcript) {
    const auto& request = dictation.request;
    steps.updateHUD(DictationHUDState::Transcribing{});
    const auto pass =
        co_await steps.recognise(request, WhisperMode::TranslateToEnglish, "Whisper --translate failed: ");
    if (!pass)
        co_return;
    if (const auto& text = *pass; !text.isEmpty()) {
        steps.deliver(dictation, text);
        steps.trace(
            QStringLiteral("[en-target] Whisper --translate typed %1 chars.").arg(countForTrace(text)));
    } else if (!transcript.isEmpty()) {
        steps.deliver(dictation, transcript);
    }
    steps.finishDictation(request.wav);
}

} // namespace talvera
