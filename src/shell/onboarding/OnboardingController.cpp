// SPDX-License-Identifier: MIT
#include "shell/onboarding/OnboardingController.h"

#include "concurrency/MainActor.h"
#include "concurrency/onBackground.h"
#include "models/ModelStore.h"
#include "persistence/AppSettings.h"
#include "platform/system/Directories.h"
#include "platform/system/PlatformError.h"
#include "shell/onboarding/RecognitionWarmup.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "text/Localization.h"

#include <utility>

namespace talvera {

namespace {

constexpr double minDemoSeconds = 0.3;

using Kind = DemoPhase::Kind;

template <typename T>
Subscription mirror(Published<T>& source, Published<T>& mirrored) {
    return source.observe([&mirrored](const T& value) {
        if (mirrored.get() != value)
            mirrored.set(value);
    });
}

} // namespace

OnboardingController::OnboardingController(Parts parts)
    : micStatus(parts.readiness.micStatus.get())
    , axTrusted(parts.readiness.axTrusted.get())
    , inputMonitoringGranted(parts.readiness.inputMonitoringGranted.get())
    , didWhisperWarmup(parts.warmup.didWhisperWarmup.get())
    , m_parts(std::move(parts))
    , m_recorder(m_parts.audio, m_parts.converters, m_parts.files, m_parts.actor) {
    m_observations.push_back(m_parts.downloader.phase.observe([this](const ModelDownloader::Phase& phase) {
        if (phase.kind() == ModelDownloader::Phase::Done)
            m_parts.warmup.kickWhisperOnce(m_parts.makeRunner());
    }));
    m_observations.push_back(mirror(m_parts.warmup.didWhisperWarmup, didWhisperWarmup));
    m_observations.push_back(mirror(m_parts.readiness.micStatus, micStatus));
    m_observations.push_back(mirror(m_parts.readiness.axTrusted, axTrusted));
    m_observations.push_back(mirror(m_parts.readiness.inputMonitoringGranted, inputMonitoringGranted));
    m_observations.push_back(captureHotkey.observe([this](bool captures) {
        if (!captures) // a release will not come here
            abandonDemo();
    }));
    m_recorder.setOnLevel([this](float level) { demoLevel.set(level); });
}

OnboardingController::~OnboardingController() = default;

bool OnboardingController::hasPermissions() const {
    return micStatus.get() == AuthorizationStatus::Authorized && axTrusted.get();
}

bool OnboardingController::canGoOn() const {
    return step.get() != DownloadStep ||
           m_parts.downloader.phase.get().kind() == ModelDownloader::Phase::Done;
}

QString OnboardingController::hint() const {
    if (canGoOn())
        return {};
    return m_parts.downloader.phase.get().kind() == ModelDownloader::Phase::Failed
               ? localized("onboarding.nav.hint.downloadFailed", "Download failed — retry to continue")
               : localized("onboarding.nav.hint.waitingDownload", "Waiting for model download…");
}

void OnboardingController::pressPrimary() {
    if (!canGoOn())
        return;
    if (step.get() == PermissionsStep && !hasPermissions())
        asksToSkipPermissions.set(true);
    else
        advance();
}

void OnboardingController::advance() {
    if (step.get() < DemoStep) {
        goTo(step.get() + 1);
        return;
    }
    captureHotkey.set(false);
    m_parts.settings.hasOnboarded.set(true);
    if (onFinished)
        onFinished();
}

void OnboardingController::back() {
    if (step.get() > WelcomeStep)
        goTo(step.get() - 1);
}

void OnboardingController::goTo(int next) {
    asksToSkipPermissions.set(false);
    suspendHotkey.set(false); // a chord is recorded on its own step alone
    step.set(next);
    enterStep();
}

void OnboardingController::enterStep() {
    switch (step.get()) {
    case DemoStep:
        captureForDemo();
        break;
    case DownloadStep:
        m_parts.downloader.start();
        [[fallthrough]]; // nobody arrives here with the hotkey taken but from the demo
    default:
        captureHotkey.set(false);
    }
}

void OnboardingController::captureForDemo() {
    if (!captureHotkey.get() && onTakingHotkey)
        onTakingHotkey();
    captureHotkey.set(true);
}

void OnboardingController::skipPermissions() {
    asksToSkipPermissions.set(false);
    advance();
}

void OnboardingController::openSettingsInstead() {
    asksToSkipPermissions.set(false);
    if (!axTrusted.get())
        openAccessibilitySettings();
    else if (micStatus.get() != AuthorizationStatus::Authorized)
        openMicrophoneSettings();
}

void OnboardingController::requestMicrophone() {
    m_parts.readiness.requestMicrophone(m_lifetime.ifAlive([this] {
        m_parts.readiness.refresh();
        if (onReactivate)
            onReactivate();
    }));
}

void OnboardingController::openMicrophoneSettings() {
    const auto advice = m_parts.readiness.openMicrophoneSettings();
    if (advice && onAdvice)
        onAdvice(*advice);
}

void OnboardingController::openAccessibilitySettings() {
    const auto advice = m_parts.readiness.openAccessibilitySettings();
    if (advice && onAdvice)
        onAdvice(*advice);
}

void OnboardingController::setRecordsChord(bool records) {
    if (!records || step.get() != HotkeyStep) {
        suspendHotkey.set(false);
        return;
    }
    if (onTakingHotkey)
        onTakingHotkey();
    suspendHotkey.set(true);
}

void OnboardingController::demoPressStart() {
    if (demoPhase.get().is(Kind::Recording) || demoPhase.get().is(Kind::Transcribing))
        return;
    m_demoWav =
        QStringLiteral("%1/talvera-demo-%2.wav").arg(m_parts.directories.temporary, m_parts.makeFreshName());
    ++m_demo;
    demoLevel.set(0);
    try {
        m_recorder.start();
    } catch (const std::exception&) {
        failDemo(
            localized("onboarding.demo.error.microphone",
                      "The microphone can't be opened. Plug one in, or allow it in the sound settings."));
        return;
    }
    demoPhase.set({Kind::Recording});
    demoTranscript.set({});
}

void OnboardingController::demoPressEnd() {
    if (!isDemoRecording() || !m_demoWav)
        return;
    const auto wav = *std::exchange(m_demoWav, std::nullopt);
    double audioSeconds = 0;
    try {
        audioSeconds = m_recorder.stop(wav);
    } catch (const std::exception&) {
        removeIfPossible(m_parts.files, wav);
        failDemo(localized("dictation.notSaved", "Couldn't save recording"));
        return;
    }
    if (audioSeconds < minDemoSeconds) { // a slip of the finger
        removeIfPossible(m_parts.files, wav);
        demoPhase.set({Kind::Idle});
        return;
    }
    demoPhase.set({Kind::Transcribing});
    recognise(wav);
}

void OnboardingController::recognise(const QString& wav) {
    m_parts.actor.start([this, owner = m_lifetime.token(), wav, demo = m_demo,
                         language = m_parts.settings.sourceLanguageCode.get()]() -> Task<void> {
        if (!owner.isAlive())
            co_return;
        auto& files = m_parts.files;
        std::function<QString()> work = [runner = m_parts.makeRunner(), wav, language] {
            return runner.transcribe(wav, WhisperMode::Transcribe, language);
        };
        std::optional<QString> text;
        try {
            text = co_await onBackground(m_parts.background, std::move(work));
        } catch (const std::exception&) { // told below
        }
        removeIfPossible(files, wav);
        if (owner.isAlive() && demo == m_demo)
            showResult(text);
    });
}

void OnboardingController::showResult(const std::optional<QString>& text) {
    if (!text) {
        failDemo(localized("dictation.transcriptionFailed", "Transcription failed"));
        return;
    }
    demoTranscript.set(*text);
    demoPhase.set({Kind::Done});
    m_parts.warmup.didWhisperWarmup.set(true);
}

void OnboardingController::failDemo(const QString& message) {
    m_demoWav.reset();
    demoPhase.set(DemoPhase::error(message));
}

/// What is being recorded is thrown away.
void OnboardingController::abandonDemo() {
    if (!isDemoRecording() || !m_demoWav)
        return;
    const auto wav = *std::exchange(m_demoWav, std::nullopt);
    try {
        m_recorder.stop(wav);
    } catch (const std::exception&) { // nothing of it is wanted
    }
    removeIfPossible(m_parts.files, wav);
    demoPhase.set({Kind::Idle});
}

void OnboardingController::windowWillShow() {
    m_parts.downloader.start(); // which also tries again what has failed since the user was there
    // The model may have gone since the user was there, and without it what comes after is of no use.
    if (step.get() > DownloadStep && !m_parts.models.isReady())
        step.set(DownloadStep);
    enterStep();
}

/// What was said in the demo goes with the window that showed it.
void OnboardingController::windowWillClose() {
    asksToSkipPermissions.set(false);
    suspendHotkey.set(false);
    captureHotkey.set(false);
    ++m_demo;
    demoPhase.set({Kind::Idle});
    demoTranscript.set({});
}

} // namespace talvera
