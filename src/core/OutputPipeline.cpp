// SPDX-License-Identifier: MIT
#include "core/OutputPipeline.h"

#include "concurrency/MainActor.h"
#include "core/Route.h"
#include "core/routes/routes.h"

#include <utility>

namespace talvera {

OutputPipeline::OutputPipeline(Parts parts)
    : m_steps(std::move(parts)) {}

Task<void> OutputPipeline::runPipeline(Dictation dictation) {
    const auto self = shared_from_this();
    const auto& request = dictation.request;
    if (translatesDirectly(request)) {
        co_await translateDirect(m_steps, dictation);
        co_return;
    }

    auto& actor = m_steps.parts().actor;
    const auto started = actor.now();
    const auto pass = co_await m_steps.recognise(request, WhisperMode::Transcribe, "Whisper failed: ");
    if (!pass)
        co_return;
    const auto& transcript = *pass;
    const double elapsed = toSeconds(actor.now() - started);
    // Each stage is a task of its own, so that what came in while the recogniser ran, a key above all, has
    // its turn before the text is routed. The account of the recognition is the first, and nothing depends on
    // it.
    actor.post([self, elapsed, transcript] {
        self->m_steps.trace(QString::asprintf("[timing] whisper %.2fs", elapsed));
        self->m_steps.trace(
            QStringLiteral("[pipeline] whisper transcribe (%1 chars)").arg(countForTrace(transcript)));
    });
    actor.start([self, dictation, transcript]() -> Task<void> {
        return self->continueAfterTranscription(dictation, transcript);
    });
}

Task<void> OutputPipeline::continueAfterTranscription(Dictation dictation, QString transcript) {
    const auto self = shared_from_this();
    const auto& request = dictation.request;
    if (transcript.isEmpty()) {
        m_steps.finishDictation(request.wav);
        co_return;
    }
    m_steps.trace(QStringLiteral("Transcript received (%1 chars).").arg(countForTrace(transcript)));
    const bool translates = request.target.code != QStringLiteral("off");
    m_steps.record(transcript, request, translates, request.cleanup, polishBackend(request));
    co_await runRoute(dictation, transcript);
}

Task<void> OutputPipeline::runRoute(const Dictation& dictation, const QString& transcript) {
    const auto& parts = m_steps.parts();
    switch (chooseRoute(dictation.request, transcript, parts.languageRecognizer, parts.trace)) {
    case Route::TranslateDirect: // taken before the transcription
    case Route::Plain:
        insertPlain(m_steps, dictation, transcript);
        break;
    case Route::SecondPass:
        co_await translateInSecondPass(m_steps, dictation, transcript);
        break;
    case Route::AITranslate:
        co_await translateByModel(m_steps, dictation, transcript);
        break;
    case Route::TwoHopTranslate:
        co_await translateInTwoHops(m_steps, dictation);
        break;
    case Route::WhisperFallback:
        co_await fallBackToWhisper(m_steps, dictation);
        break;
    case Route::AICleanup:
        co_await cleanUp(m_steps, dictation, transcript);
        break;
    }
}

QString OutputPipeline::polishBackend(const DictationRequest& request) const {
    return request.cleanup || request.useAI ? m_steps.backendName() : QStringLiteral("none");
}

} // namespace talvera
