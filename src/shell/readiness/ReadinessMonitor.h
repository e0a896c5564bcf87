// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Lifetime.h"
#include "concurrency/MainActor.h"
#include "concurrency/Published.h"
#include "language/AIAvailabilityState.h"
#include "platform/language/LanguageModel.h"
#include "platform/sound/MicrophonePermission.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

class ProgramActivation;
class SessionAccess;
class SettingsPanels;

/// Whether the program can work: publishes what the session lets us do, and follows its changes. It looks
/// again when the user turns to the program and, while something is missing that may still come, every 2
/// seconds; else it rests. Changes nothing by itself. Main thread only.
class ReadinessMonitor {
public:
    struct Parts {
        MainActor& actor;
        MicrophonePermission& microphone;
        SessionAccess& access;
        LanguageModel& languageModel;
        SettingsPanels& settingsPanels;
        ProgramActivation& activation;
    };

    explicit ReadinessMonitor(Parts parts);
    ~ReadinessMonitor();
    ReadinessMonitor(const ReadinessMonitor&) = delete;
    ReadinessMonitor& operator=(const ReadinessMonitor&) = delete;

    Published<AuthorizationStatus> micStatus;
    Published<bool> axTrusted;
    Published<bool> inputMonitoringGranted;
    Published<AIAvailabilityState> aiState;

    /// The two that a dictation can't do without are granted: microphone and Accessibility.
    bool isReady() const { return missingCount() == 0; }
    /// How many of the two are lacking.
    int missingCount() const;

    /// Why one of the two is lacking and what the user can do about it, in a plain sentence; empty when
    /// nothing is lacking.
    QString microphoneLackText() const;
    QString accessibilityLackText() const;
    /// The desktop can give what lacks: in its settings, or at our word.
    bool canAllowAccessibility() const;

    /// Looks at all four now and publishes what has changed.
    void refresh();

    /// A fresh reading, which leaves the published value alone.
    AIAvailabilityState currentAIState() const;

    /// What the reason for a missing language model means here; nothing is no reason.
    static AIAvailabilityState aiStateFor(std::optional<LanguageModel::UnavailableReason> reason);

    /// Asks the user for the microphone and calls `done` once the answer is known.
    void requestMicrophone(std::function<void()> done);

    /// Opens the settings of this desktop, or gets what lacks outright. Where neither helps, answers what to
    /// tell the user instead.
    [[nodiscard]] std::optional<QString> openMicrophoneSettings();
    [[nodiscard]] std::optional<QString> openAccessibilitySettings();

    bool isPolling() const { return m_pollTimer.has_value(); }

private:
    void refreshLater();
    void applyPollRule();
    void startPollTimer();

    Parts m_parts;
    std::optional<MainActor::TimerId> m_pollTimer;
    Subscription m_microphoneChanges;
    Subscription m_languageModelChanges;
    Subscription m_activations;
    Lifetime m_lifetime;
};

} // namespace talvera
