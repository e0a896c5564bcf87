// SPDX-License-Identifier: MIT
#include "core/DictationController.h"

#include "concurrency/MainActor.h"
#include "core/OutputPipeline.h"
#include "core/PermissionPrompt.h"
#include "core/Route.h"
#include "delivery/FocusTracker.h"
#include "delivery/TextInserter.h"
#include "language/AICleanup.h"
#include "models/ModelStore.h"
#include "persistence/AppSettings.h"
#include "platform/desktop/Notifier.h"
#include "platform/desktop/StatusItem.h"
#include "platform/language/LanguageModel.h"
#include "platform/system/Directories.h"
#include "platform/system/FileSystem.h"
#include "platform/system/PlatformError.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/onboarding/OnboardingWindow.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "shell/settings/StartSound.h"
#include "speech/AudioRecorder.h"
#include "speech/EarlyRecognition.h"
#include "text/Localization.h"

#include <QLocale>

#include <utility>

namespace talvera {

namespace {

constexpr Duration errorTime = seconds(4.0);
constexpr Duration noticeTime = seconds(3.0);

using State = MenuBarController::State;

/// The shortest decimal form that tells the number from all others.
QString shortest(double number) {
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}

QString trueOrFalse(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

DictationController::DictationController(Parts parts)
    : m_parts(std::move(parts)) {}

DictationController::~DictationController() = default;

void DictationController::handlePressStart() {
    if (!m_parts.settings.hotkeyTapToToggle.get())
        start(&DictationController::startPressAfterHoldDelay);
    else
        handleToggle();
}

void DictationController::handleToggle() {
    if (m_parts.menuBar.state.get() == State::Recording || isDemoRecording())
        start(&DictationController::endPress);
    else
        start(&DictationController::startPressNow);
}

void DictationController::handlePressEnd() {
    if (!m_parts.settings.hotkeyTapToToggle.get())
        start(&DictationController::endPress);
}

/// The user is after a shortcut, such as Ctrl with the arrow keys, unless the press records already.
void DictationController::handleOtherKeyWhileHeld() {
    start(&DictationController::cancelPendingPress);
}

/// In tap mode a second tap ends the demo, too.
bool DictationController::isDemoRecording() const {
    return m_parts.onboarding.captureHotkey.get() && m_parts.onboarding.isDemoRecording();
}

/// Each step is a task of its own, in the order of the key events.
void DictationController::start(void (DictationController::*step)()) {
    m_parts.actor.post(m_lifetime.ifAlive([this, step] { (this->*step)(); }));
}

bool DictationController::passPressGate() {
    if (m_parts.onboarding.suspendHotkey.get())
        return false;
    if (m_parts.onboarding.captureHotkey.get()) {
        m_parts.onboarding.demoPressStart();
        return false;
    }
    // The only protection against a second dictation: a press during one is ignored.
    if (m_parts.menuBar.state.get() != State::Idle)
        return false;
    if (!m_parts.models.isReady()) {
        m_parts.onboardingWindow.show();
        return false;
    }
    if (!m_parts.permissions->ensurePermissions())
        return false;
    m_currentWav =
        QStringLiteral("%1/talvera-%2.wav").arg(m_parts.directories.temporary, m_parts.makeFreshName());
    m_pressStartedAt = m_parts.actor.now();
    if (m_pendingRecordStart)
        m_pendingRecordStart->cancel();
    return true;
}

void DictationController::startPressAfterHoldDelay() {
    if (!passPressGate())
        return;
    const CancellationToken token;
    m_pendingRecordStart = token;
    m_parts.actor.start([this, owner = m_lifetime.token(), &actor = m_parts.actor, token]() -> Task<void> {
        if (!owner.isAlive())
            co_return;
        co_await actor.sleep(holdToRecordDelay, token);
        // A release may have come in between the end of the sleep and this turn.
        if (token.isCancelled())
            co_return;
        if (owner.isAlive())
            beginRecording();
    });
}

void DictationController::startPressNow() {
    if (!passPressGate())
        return;
    m_pendingRecordStart.reset();
    beginRecording();
}

void DictationController::beginRecording() {
    m_pendingRecordStart.reset();
    if (m_parts.menuBar.state.get() != State::Idle || !m_currentWav)
        return;
    m_parts.recorder.setOnLevel([&hud = m_parts.hud, &early = m_parts.early](float level) {
        hud.setLevel(level);
        early.follow();
    });
    try {
        m_parts.recorder.start();
    } catch (const std::exception& error) {
        giveUpRecording(error);
        return;
    }
    m_focusSnapshot = m_parts.focus.captureFocusSnapshot();
    m_parts.menuBar.state.set(State::Recording);
    m_parts.hud.show(DictationHUDState::Listening{m_parts.actor.date()});
    playStartSound(m_parts.sounds, m_parts.settings.startSoundName.get());
    recogniseEarly(*m_currentWav);
    m_parts.inserter.prepare();
    if (willAskLanguageModel())
        m_parts.languageModel.prepare(); // it loads while the user speaks
}

/// With the settings as they are now; those of the release decide whether it was of use.
void DictationController::recogniseEarly(const QString& wav) {
    const auto request = requestNow();
    const auto mode = translatesDirectly(request) ? WhisperMode::TranslateToEnglish : WhisperMode::Transcribe;
    m_parts.early.begin({wav, mode, request.source});
}

/// As far as the settings can tell; those of the release decide.
bool DictationController::willAskLanguageModel() const {
    const auto& settings = m_parts.settings;
    const bool cleansUp = settings.aiCleanupEnabled.get() && settings.cleanupTone.get() != CleanupTone::Off;
    return cleansUp || TargetLanguage::byCode(settings.targetLanguageCode.get()).requiresAI;
}

void DictationController::giveUpRecording(const std::exception& error) {
    const auto message = localized("dictation.noMicrophone", "Microphone unavailable");
    m_parts.trace(QStringLiteral("Recorder start failed: ") + QString::fromUtf8(error.what()));
    m_parts.menuBar.showError(message, errorTime);
    m_parts.hud.showNotice(message, DictationHUDState::NoticeTone::Warn, noticeTime);
    m_focusSnapshot.reset();
    forgetPress();
}

void DictationController::endPress() {
    if (m_parts.onboarding.suspendHotkey.get())
        return;
    if (m_parts.onboarding.captureHotkey.get()) {
        m_parts.onboarding.demoPressEnd();
        return;
    }
    endPressInHand();
}

void DictationController::endPressInHand() {
    if (m_pendingRecordStart) {
        cancelPendingPress();
        return;
    }
    if (m_parts.menuBar.state.get() == State::Recording && m_currentWav)
        finishRecording(*m_currentWav);
}

/// What ends before the hold delay has run out leaves no trace.
void DictationController::cancelPendingPress() {
    const auto pending = std::exchange(m_pendingRecordStart, std::nullopt);
    if (!pending)
        return;
    pending->cancel();
    forgetPress();
}

void DictationController::forgetPress() {
    if (m_currentWav)
        deleteFile(*m_currentWav);
    m_currentWav.reset();
    m_pressStartedAt.reset();
}

void DictationController::finishRecording(const QString& wav) {
    const auto now = m_parts.actor.now();
    const double held = toSeconds(now - m_pressStartedAt.value_or(now));
    double audioSeconds = 0;
    try {
        audioSeconds = m_parts.recorder.stop(wav);
    } catch (const std::exception& error) {
        m_parts.early.end();
        m_parts.trace(QStringLiteral("Recorder stop failed: ") + QString::fromUtf8(error.what()));
        sayNotSaved();
        return; // the next press overwrites what this one has left
    }
    const auto mode = TextInserter::resolveMode(m_parts.settings.insertionMode.get(), audioSeconds,
                                                m_parts.settings.typewriterThresholdSeconds.get());
    m_parts.recorder.setOnLevel(nullptr);
    if (held < minPressDuration || audioSeconds < minAudioDuration) {
        m_parts.trace(QStringLiteral("Press too short (held %1s, audio %2s) — discarding.")
                          .arg(shortest(held), shortest(audioSeconds)));
        discardRecording(wav);
        return; // the HUD goes on showing what it shows
    }
    m_parts.menuBar.state.set(State::Transcribing);
    m_parts.hud.update(DictationHUDState::Transcribing{});
    const auto request = makeRequest(wav, audioSeconds, mode);
    m_parts.actor.start(
        [weak = std::weak_ptr(m_parts.pipeline), request, snapshot = m_focusSnapshot]() -> Task<void> {
            const auto pipeline = weak.lock();
            if (!pipeline)
                co_return;
            const Dictation dictation{request, snapshot};
            co_await pipeline->runPipeline(dictation);
        });
}

/// The item in the tray alone tells it, and some desktops show none.
void DictationController::sayNotSaved() {
    const auto message = localized("dictation.notSaved", "Couldn't save recording");
    m_parts.menuBar.showError(message, errorTime);
    if (!m_parts.statusItem.isSeen())
        m_parts.notifier.notify(message, {}, [](bool) {});
}

/// What the settings ask for now, of any recording.
DictationRequest DictationController::requestNow() const {
    const auto& settings = m_parts.settings;
    const auto aiState = m_parts.readiness.currentAIState();
    DictationRequest request;
    request.target = TargetLanguage::byCode(settings.targetLanguageCode.get());
    request.source = settings.sourceLanguageCode.get();
    request.aiAvailable = aiState == AIAvailabilityState::Available;
    request.cleanup = settings.aiCleanupEnabled.get() && request.aiAvailable &&
                      settings.cleanupTone.get() != CleanupTone::Off;
    return request;
}

DictationRequest DictationController::makeRequest(const QString& wav, double audioSeconds,
                                                  ResolvedMode mode) const {
    const auto aiState = m_parts.readiness.currentAIState();
    auto request = requestNow();
    request.wav = wav;
    request.audioSeconds = audioSeconds;
    request.mode = mode;
    const bool aiSourceOK =
        request.source == QStringLiteral("auto") ||
        AICleanup::isSourceSupported(request.source, aiState,
                                     AICleanup::supportedLanguageCodes(m_parts.languageModel));
    request.useAI = request.target.requiresAI && request.aiAvailable && aiSourceOK;
    m_parts.trace(
        QStringLiteral("[cfg] target=%1 srcLang=%2 cleanup=%3 aiAvail=%4 aiSrcOK=%5 useAI=%6 audio=%7")
            .arg(request.target.code, request.source,
                 request.cleanup ? QStringLiteral("on") : QStringLiteral("off"),
                 trueOrFalse(request.aiAvailable), trueOrFalse(aiSourceOK), trueOrFalse(request.useAI),
                 QString::asprintf("%.2fs", audioSeconds)));
    return request;
}

void DictationController::discardRecording(const QString& wav) {
    m_parts.early.end();
    m_parts.menuBar.state.set(State::Idle);
    deleteFile(wav);
}

void DictationController::deleteFile(const QString& path) {
    removeIfPossible(m_parts.files, path); // a cancelled press has no file yet
}

} // namespace talvera
