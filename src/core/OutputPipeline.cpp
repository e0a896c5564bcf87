// SPDX-License-Identifier: MIT
#include "core/OutputPipeline.h"

#include "concurrency/MainActor.h"
#include "core/Route.h"
#include "delivery/TextInserter.h"
#include "persistence/StatsStore.h"
#include "platform/system/FileSystem.h"
#include "platform/system/PlatformError.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "speech/ChunkedTranscription.h"
#include "text/Characters.h"
#include "text/Localization.h"

#include <utility>

namespace talvera {

namespace {

// A recording longer than the last of these is recognised in chunks of the first, which overlap by the
// second.
constexpr double chunkSeconds = 25.0;
constexpr double overlapSeconds = 2.0;
constexpr double minDuration = 28.0;

constexpr Duration errorTime = seconds(4.0);
constexpr Duration noticeTime = seconds(3.0);

constexpr auto translationFailed = "Whisper --translate failed: ";

using Tone = DictationHUDState::NoticeTone;

QString count(const QString& text) {
    return QString::number(characterCount(text));
}

} // namespace

OutputPipeline::OutputPipeline(Parts parts)
    : m_parts(std::move(parts)) {}

Task<void> OutputPipeline::runPipeline(Dictation dictation) {
    const auto self = shared_from_this();
    const auto& request = dictation.request;
    if (translatesDirectly(request)) {
        co_await translateDirect(dictation);
        co_return;
    }

    const auto started = m_parts.actor.now();
    const auto pass = co_await recognise(request, WhisperMode::Transcribe, "Whisper failed: ");
    if (!pass)
        co_return;
    const auto& transcript = *pass;
    const double elapsed = toSeconds(m_parts.actor.now() - started);
    // Each stage is a task of its own, so that what came in while the recogniser ran, a key above all, has
    // its turn before the text is routed. The account of the recognition is the first, and nothing depends on
    // it.
    m_parts.actor.post([self, elapsed, transcript] {
        self->trace(QString::asprintf("[timing] whisper %.2fs", elapsed));
        self->trace(QStringLiteral("[pipeline] whisper transcribe (%1 chars)").arg(count(transcript)));
    });
    m_parts.actor.start([self, dictation, transcript]() -> Task<void> {
        return self->continueAfterTranscription(dictation, transcript);
    });
}

Task<void> OutputPipeline::continueAfterTranscription(Dictation dictation, QString transcript) {
    const auto self = shared_from_this();
    const auto& request = dictation.request;
    if (transcript.isEmpty()) {
        finishDictation(request.wav);
        co_return;
    }
    trace(QStringLiteral("Transcript received (%1 chars).").arg(count(transcript)));
    const bool translates = request.target.code != QStringLiteral("off");
    m_parts.stats.record(transcript, request.audioSeconds, request.source, translates, request.cleanup,
                         polishBackend(request));
    co_await runRoute(dictation, transcript);
}

Task<void> OutputPipeline::runRoute(const Dictation& dictation, const QString& transcript) {
    switch (chooseRoute(dictation.request, transcript, m_parts.languageRecognizer, m_parts.trace)) {
    case Route::TranslateDirect: // taken before the transcription
    case Route::Plain:
    case Route::AICleanup: // no language model that could clean up: the transcript stays as it is
        insertPlain(dictation, transcript);
        break;
    case Route::SecondPass:
        co_await translateInSecondPass(dictation, transcript);
        break;
    case Route::AITranslate: // no language model that could translate: the recogniser does, into English
    case Route::TwoHopTranslate:
    case Route::WhisperFallback:
        co_await fallBackToWhisper(dictation);
        break;
    }
}

Task<void> OutputPipeline::translateDirect(const Dictation& dictation) {
    const auto& request = dictation.request;
    const auto started = m_parts.actor.now();
    const auto pass = co_await recognise(request, WhisperMode::TranslateToEnglish, translationFailed);
    if (!pass)
        co_return;
    const auto& text = *pass;
    trace(QString::asprintf("[timing] whisper(translate-direct) %.2fs",
                            toSeconds(m_parts.actor.now() - started)));
    trace(QStringLiteral("[pipeline] whisper translate-direct (%1 chars)").arg(count(text)));
    if (!text.isEmpty()) {
        m_parts.stats.record(text, request.audioSeconds, request.source, true, false, QStringLiteral("none"));
        deliver(dictation, text);
        trace(QStringLiteral("[en-target-direct] typed %1 chars.").arg(count(text)));
    }
    finishDictation(request.wav);
}

void OutputPipeline::insertPlain(const Dictation& dictation, const QString& transcript) {
    deliver(dictation, transcript);
    finishDictation(dictation.request.wav);
}

Task<void> OutputPipeline::translateInSecondPass(const Dictation& dictation, const QString& transcript) {
    const auto& request = dictation.request;
    m_parts.hud.update(DictationHUDState::Transcribing{});
    const auto pass = co_await recognise(request, WhisperMode::TranslateToEnglish, translationFailed);
    if (!pass)
        co_return;
    if (const auto& text = *pass; !text.isEmpty()) {
        deliver(dictation, text);
        trace(QStringLiteral("[en-target] Whisper --translate typed %1 chars.").arg(count(text)));
    } else if (!transcript.isEmpty()) {
        deliver(dictation, transcript);
    }
    finishDictation(request.wav);
}

Task<void> OutputPipeline::fallBackToWhisper(const Dictation& dictation) {
    const auto& request = dictation.request;
    const auto why =
        QStringLiteral("(originalTarget=%1, reason=Apple Intelligence is off)").arg(request.target.code);
    trace(QStringLiteral("Running Whisper --translate fallback %1.").arg(why));
    m_parts.hud.update(DictationHUDState::Transcribing{});
    const auto pass =
        co_await recognise(request, WhisperMode::TranslateToEnglish, "Whisper fallback also failed: ");
    if (!pass)
        co_return;
    if (const auto& text = *pass; !text.isEmpty()) {
        deliver(dictation, text);
        m_parts.hud.showNotice(localized("hud.translate.whisperFallback",
                                         "Whisper translation — Apple Intelligence unavailable"),
                               Tone::Info, noticeTime);
        trace(QStringLiteral("Fallback typed %1 chars in English %2.").arg(count(text), why));
    } else {
        m_parts.hud.showNotice(localized("dictation.nothingRecognized", "Nothing recognized"), Tone::Warn,
                               noticeTime);
    }
    m_parts.menuBar.state.set(MenuBarController::State::Idle);
    deleteRecording(request.wav);
}

void OutputPipeline::finishDictation(const QString& wav) {
    m_parts.menuBar.state.set(MenuBarController::State::Idle);
    if (!m_parts.hud.currentState().as<DictationHUDState::Notice>())
        m_parts.hud.hide();
    deleteRecording(wav);
}

void OutputPipeline::failRecognition(const QString& wav, const char* traceText, const std::exception& error) {
    trace(QString::fromUtf8(traceText) + QString::fromUtf8(error.what()));
    const auto message = localized("dictation.transcriptionFailed", "Transcription failed");
    m_parts.menuBar.showError(message, errorTime);
    m_parts.hud.showNotice(message, Tone::Warn, noticeTime);
    deleteRecording(wav);
}

void OutputPipeline::deleteRecording(const QString& wav) {
    removeIfPossible(m_parts.files, wav);
}

Task<std::optional<QString>> OutputPipeline::recognise(const DictationRequest& request, WhisperMode mode,
                                                       const char* failureText) {
    try {
        auto pass = m_parts.transcription.transcribeChunked(
            m_parts.whisper, request.wav, mode, request.source, chunkSeconds, overlapSeconds, minDuration);
        co_return co_await pass;
    } catch (const std::exception& error) {
        failRecognition(request.wav, failureText, error);
        co_return std::nullopt;
    }
}

void OutputPipeline::deliver(const Dictation& dictation, const QString& text) {
    m_parts.inserter.insert(text, dictation.request.mode, dictation.focusSnapshot);
}

QString OutputPipeline::polishBackend(const DictationRequest& request) const {
    if (!request.cleanup && !request.useAI)
        return QStringLiteral("none");
    return m_parts.readiness.currentAIState() == AIAvailabilityState::Available
               ? QStringLiteral("Apple Intelligence")
               : QStringLiteral("Unavailable");
}

} // namespace talvera
