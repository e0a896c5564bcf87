// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/CancellationToken.h"
#include "concurrency/Lifetime.h"
#include "concurrency/Task.h"
#include "concurrency/Time.h"
#include "core/DictationRequest.h"
#include "core/Trace.h"
#include "delivery/FocusSnapshot.h"
#include "delivery/InsertionMode.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class AppSettings;
class AudioRecorder;
class DictationHUDController;
class EarlyRecognition;
class FileSystem;
class FocusTracker;
class LanguageModel;
class MainActor;
class MenuBarController;
class ModelStore;
class OnboardingController;
class Notifier;
class OnboardingWindow;
class OutputPipeline;
class PermissionPrompt;
class ReadinessMonitor;
class SoundPlayer;
class StatusItem;
class TextInserter;
struct Directories;

/// Turns presses and releases of the hotkey into recordings: whether a press may record, when it does,
/// whether the recording is worth keeping, and with which settings it goes on.
///
/// It alone holds the state of the press: when it began, its recording, whether it still waits. The state of
/// the dictation, from idle through recording and transcribing back to idle, is MenuBarController's; this
/// class asks it at every step and sets it. Main thread only.
class DictationController {
public:
    /// What the controller works with; all that it does not own outlives it.
    struct Parts {
        MainActor& actor;
        FileSystem& files;
        const Directories& directories;
        std::function<QString()> makeFreshName; ///< a part for a file's name that no other file has
        LanguageModel& languageModel;
        SoundPlayer& sounds;
        StatusItem& statusItem;
        Notifier& notifier;
        AppSettings& settings;
        ModelStore& models;
        AudioRecorder& recorder;
        EarlyRecognition& early;
        FocusTracker& focus;
        TextInserter& inserter;
        MenuBarController& menuBar;
        DictationHUDController& hud;
        ReadinessMonitor& readiness;
        OnboardingController& onboarding;
        OnboardingWindow& onboardingWindow;
        std::shared_ptr<PermissionPrompt> permissions;
        std::shared_ptr<OutputPipeline> pipeline;
        Trace trace;
    };

    explicit DictationController(Parts parts);
    ~DictationController();
    DictationController(const DictationController&) = delete;
    DictationController& operator=(const DictationController&) = delete;

    /// The hotkey's callbacks. All return at once.
    void handlePressStart();
    void handlePressEnd();
    /// A press of tap mode, whichever mode is set.
    void handleToggle();
    void handleOtherKeyWhileHeld();

    /// The hotkey's release will not come here, since the wizard takes it: ends the present press now, as its
    /// release would have.
    void endPressInHand();

    /// Where the recording of the present press is, or will be.
    const std::optional<QString>& currentWav() const { return m_currentWav; }
    const std::optional<Instant>& pressStartedAt() const { return m_pressStartedAt; }
    const std::optional<FocusSnapshot>& focusSnapshot() const { return m_focusSnapshot; }
    /// A press is waiting for the hold delay to pass.
    bool hasPendingRecordStart() const { return m_pendingRecordStart.has_value(); }

    static constexpr Duration holdToRecordDelay = seconds(0.6);
    static constexpr double minPressDuration = 0.2; ///< seconds; a shorter press is discarded
    static constexpr double minAudioDuration = 0.3; ///< seconds; less is not worth recognising

private:
    void start(void (DictationController::*step)());
    bool isDemoRecording() const;

    bool passPressGate();
    void startPressAfterHoldDelay();
    void startPressNow();
    void beginRecording();
    void recogniseEarly(const QString& wav);
    bool willAskLanguageModel() const;
    void giveUpRecording(const std::exception& error);

    void endPress();
    void cancelPendingPress();
    void forgetPress();
    void finishRecording(const QString& wav);
    void sayNotSaved();
    void discardRecording(const QString& wav);
    void deleteFile(const QString& path);
    DictationRequest requestNow() const;
    DictationRequest makeRequest(const QString& wav, double audioSeconds, ResolvedMode mode) const;

    const Parts m_parts;

    std::optional<QString> m_currentWav;
    std::optional<Instant> m_pressStartedAt; ///< of the press, not of the recording
    std::optional<CancellationToken> m_pendingRecordStart;
    std::optional<FocusSnapshot> m_focusSnapshot; ///< of the moment at which the recording began
    Lifetime m_lifetime;
};

} // namespace talvera
