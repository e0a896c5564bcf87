// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/Published.h"
#include "models/ModelDownloader.h"
#include "platform/sound/MicrophonePermission.h"
#include "shell/onboarding/DemoPhase.h"
#include "speech/AudioRecorder.h"
#include "speech/WhisperRunner.h"

#include <QString>

#include <functional>
#include <optional>

namespace talvera {

class AppSettings;
class BackgroundPool;
class MainActor;
class ModelStore;
class ReadinessMonitor;
class RecognitionWarmup;
struct Directories;

/// The first-run wizard without its window: where the user is, what keeps them there, and the demo, which
/// records and recognises for real but shows its text in the wizard alone. It keeps its step when its window
/// goes, so that the wizard opens again where it was left. Main thread only; what runs in the background has
/// to end before it does.
class OnboardingController {
public:
    struct Parts {
        MainActor& actor;
        BackgroundPool& background;
        FileSystem& files;
        const Directories& directories;
        std::function<QString()> makeFreshName;
        AudioEngine& audio;
        AudioConverterFactory& converters;
        AppSettings& settings;
        const ModelStore& models;
        ReadinessMonitor& readiness;
        ModelDownloader& downloader;
        RecognitionWarmup& warmup;
        std::function<WhisperRunner()> makeRunner;
    };

    /// The steps in their order.
    enum Step { WelcomeStep, EverywhereStep, PermissionsStep, DownloadStep, HotkeyStep, DemoStep };
    static constexpr int stepCount = 6;

    explicit OnboardingController(Parts parts);
    ~OnboardingController();
    OnboardingController(const OnboardingController&) = delete;
    OnboardingController& operator=(const OnboardingController&) = delete;

    Published<int> step{WelcomeStep};

    // As the readiness monitor has them; notified of real changes alone.
    Published<AuthorizationStatus> micStatus;
    Published<bool> axTrusted;
    Published<bool> inputMonitoringGranted;

    Published<DemoPhase> demoPhase;
    Published<QString> demoTranscript;
    Published<float> demoLevel{0}; ///< how loud it is while the demo records, from 0 to 1
    Published<bool> didWhisperWarmup;

    /// The hotkey feeds the wizard's demo, and no dictation starts.
    Published<bool> captureHotkey{false};
    /// The hotkey does nothing: a shortcut is being recorded.
    Published<bool> suspendHotkey{false};

    /// The user wants to go on with permissions missing, and is asked whether they mean it.
    Published<bool> asksToSkipPermissions{false};

    /// Called before one of the two flags is set: the hotkey's release will not reach whoever has its press.
    std::function<void()> onTakingHotkey;
    /// The wizard is done, and its window is to close.
    std::function<void()> onFinished;
    /// The window is to come back to the front, where something of the desktop's own was.
    std::function<void()> onReactivate;

    /// Both permissions are granted.
    bool hasPermissions() const;
    /// The primary button can be used. Only a missing model holds the user up.
    bool canGoOn() const;
    /// What to tell beside a primary button that can't be used; else empty.
    QString hint() const;

    /// The primary button: goes on, unless something is to be asked first.
    void pressPrimary();
    /// Goes on to the next step, or ends the wizard.
    void advance();
    void back();

    // The question whether to skip the permissions
    void skipPermissions();
    void openSettingsInstead();
    void dismissQuestion() { asksToSkipPermissions.set(false); }

    /// Asks the user for the microphone.
    void requestMicrophone();
    /// Opens the desktop's settings. Where it has none, `onAdvice` gets what to tell the user instead.
    void openMicrophoneSettings();
    void openAccessibilitySettings();
    std::function<void(const QString& advice)> onAdvice;

    /// A chord is being recorded, or no longer.
    void setRecordsChord(bool records);

    /// A press and a release, of the hotkey while captureHotkey is set or of the button that is held.
    void demoPressStart();
    void demoPressEnd();
    bool isDemoRecording() const { return demoPhase.get().is(DemoPhase::Kind::Recording); }

    /// The window is about to be shown, and has been closed.
    void windowWillShow();
    void windowWillClose();

private:
    void enterStep();
    void goTo(int next);
    void captureForDemo();
    void abandonDemo();
    void recognise(const QString& wav);
    void showResult(const std::optional<QString>& text);
    void failDemo(const QString& message);

    Parts m_parts;
    AudioRecorder m_recorder;
    std::optional<QString> m_demoWav; ///< of the demo that records
    int m_demo = 0;                   ///< counts the demos: a late result of one that was given up is dropped
    Cancellables m_observations;
    Lifetime m_lifetime;
};

} // namespace talvera
