// SPDX-License-Identifier: MIT
#include "core/routes/RouteSteps.h"

#include "concurrency/MainActor.h"
#include "language/AICleanup.h"
#include "language/PartStream.h"
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

constexpr Duration errorTime = seconds(4.0);
constexpr Duration noticeTime = seconds(3.0);

} // namespace

RouteSteps::RouteSteps(Parts parts)
    : m_parts(std::move(parts)) {}

Task<std::optional<QString>> RouteSteps::recognise(const DictationRequest& request, WhisperMode mode,
                                                   const char* failureText) const {
    try {
        const auto& lengths = AudioChunker::usualLengths;
        auto pass = m_parts.transcription.transcribeChunked(m_parts.whisper, request.wav, mode,
                                                            request.source, lengths.chunkSeconds,
                                                            lengths.overlapSeconds, lengths.minDuration);
        co_return co_await pass;
    } catch (const std::exception& error) {
        failRecognition(request.wav, failureText, error);
        co_return std::nullopt;
    }
}

std::unique_ptr<PartStream> RouteSteps::askModel(const QString& instructions, const QString& input) const {
    return AICleanup::stream(m_parts.actor, m_parts.languageModel, instructions, input, false);
}

void RouteSteps::updateHUD(const DictationHUDState& state) const {
    m_parts.hud.update(state);
}

void RouteSteps::showNotice(const QString& text, DictationHUDState::NoticeTone tone) const {
    m_parts.hud.showNotice(text, tone, noticeTime);
}

void RouteSteps::record(const QString& text, const DictationRequest& request, bool translates, bool cleansUp,
                        const QString& backend) const {
    m_parts.stats.record(text, request.audioSeconds, request.source, translates, cleansUp, backend);
}

void RouteSteps::deliver(const Dictation& dictation, const QString& text) const {
    m_parts.inserter.insert(text, dictation.request.mode, dictation.focusSnapshot);
}

TextInserter::Stream RouteSteps::deliverInParts(const Dictation& dictation) const {
    return {m_parts.inserter, dictation.request.mode, dictation.focusSnapshot,
            m_parts.inserter.showFocusNotice()};
}

void RouteSteps::finishDictation(const QString& wav) const {
    m_parts.menuBar.state.set(MenuBarController::State::Idle);
    if (!m_parts.hud.currentState().as<DictationHUDState::Notice>())
        m_parts.hud.hide();
    removeIfPossible(m_parts.files, wav);
}

void RouteSteps::finishBesideNotice(const QString& wav) const {
    m_parts.menuBar.state.set(MenuBarController::State::Idle);
    removeIfPossible(m_parts.files, wav);
}

QString RouteSteps::backendName() const {
    return m_parts.readiness.currentAIState() == AIAvailabilityState::Available
               ? QStringLiteral("Apple Intelligence")
               : QStringLiteral("Unavailable");
}

void RouteSteps::failRecognition(const QString& wav, const char* traceText,
                                 const std::exception& error) const {
    trace(QString::fromUtf8(traceText) + QString::fromUtf8(error.what()));
    const auto message = localized("dictation.transcriptionFailed", "Transcription failed");
    m_parts.menuBar.showError(message, errorTime);
    showNotice(message, DictationHUDState::NoticeTone::Warn);
    removeIfPossible(m_parts.files, wav);
}

QString countForTrace(const QString& text) {
    return QString::number(characterCount(text));
}

} // namespace talvera
