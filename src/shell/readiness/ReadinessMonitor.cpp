// SPDX-License-Identifier: MIT
#include "shell/readiness/ReadinessMonitor.h"

#include "platform/desktop/Accessibility.h"
#include "platform/desktop/ProgramActivation.h"
#include "platform/desktop/SettingsPanels.h"
#include "shell/readiness/SessionLackText.h"
#include "text/Localization.h"

#include <utility>

namespace talvera {

namespace {

constexpr Duration pollInterval = seconds(2.0);

template <typename T>
void assignIfDifferent(Published<T>& published, T value) {
    if (published.get() != value)
        published.set(value);
}

} // namespace

ReadinessMonitor::ReadinessMonitor(Platform platform)
    : micStatus(platform.microphone.status())
    , axTrusted(platform.accessibility.isProcessTrusted())
    , inputMonitoringGranted(platform.accessibility.isInputMonitoringGranted())
    , aiState(aiStateFor(platform.languageModel.unavailableReason()))
    , m_platform(platform)
    , m_microphoneChanges(platform.microphone.observe([this] { refresh(); }))
    , m_activations(platform.activation.observe([this] { refreshLater(); })) {
    applyPollRule();
}

ReadinessMonitor::~ReadinessMonitor() {
    if (m_pollTimer)
        m_platform.actor.cancelTimer(*m_pollTimer);
}

int ReadinessMonitor::missingCount() const {
    return (micStatus.get() == AuthorizationStatus::Authorized ? 0 : 1) + (axTrusted.get() ? 0 : 1);
}

void ReadinessMonitor::refresh() {
    const auto microphone = m_platform.microphone.status();
    const bool trusted = m_platform.accessibility.isProcessTrusted();
    const bool inputMonitoring = m_platform.accessibility.isInputMonitoringGranted();
    const auto ai = currentAIState();
    assignIfDifferent(micStatus, microphone);
    assignIfDifferent(axTrusted, trusted);
    assignIfDifferent(inputMonitoringGranted, inputMonitoring);
    assignIfDifferent(aiState, ai);
    applyPollRule();
}

void ReadinessMonitor::refreshLater() {
    m_platform.actor.post(m_lifetime.ifAlive([this] { refresh(); }));
}

AIAvailabilityState ReadinessMonitor::currentAIState() const {
    return aiStateFor(m_platform.languageModel.unavailableReason());
}

AIAvailabilityState ReadinessMonitor::aiStateFor(std::optional<LanguageModel::UnavailableReason> reason) {
    if (!reason)
        return AIAvailabilityState::Available;
    switch (*reason) {
    case LanguageModel::UnavailableReason::IntelligenceOff:
        return AIAvailabilityState::IntelligenceOff;
    case LanguageModel::UnavailableReason::DeviceNotEligible:
        return AIAvailabilityState::DeviceNotEligible;
    case LanguageModel::UnavailableReason::ModelNotReady:
        return AIAvailabilityState::ModelNotReady;
    }
    Q_UNREACHABLE();
}

void ReadinessMonitor::requestMicrophone(std::function<void()> done) {
    m_platform.microphone.requestAccess(std::move(done));
}

std::optional<QString> ReadinessMonitor::openMicrophoneSettings() {
    if (m_platform.settingsPanels.open(SettingsPanels::Panel::Microphone))
        return std::nullopt;
    return localized("settings.none.microphone",
                     "Plug in a microphone, or allow one in this desktop's sound settings");
}

std::optional<QString> ReadinessMonitor::openAccessibilitySettings() {
    if (m_platform.settingsPanels.open(SettingsPanels::Panel::Accessibility))
        return std::nullopt;
    const auto lacks = m_platform.accessibility.sessionLacks();
    if (lacks.empty()) // it has been granted meanwhile
        return localized("settings.none.accessibility", "Nothing is missing any more");
    return sessionLackText(lacks.front());
}

void ReadinessMonitor::applyPollRule() {
    const bool mustRun = !isReady() || aiState.get() == AIAvailabilityState::IntelligenceOff ||
                         aiState.get() == AIAvailabilityState::ModelNotReady;
    if (mustRun && !m_pollTimer) {
        startPollTimer();
    } else if (!mustRun && m_pollTimer) {
        m_platform.actor.cancelTimer(*m_pollTimer);
        m_pollTimer.reset();
    }
}

void ReadinessMonitor::startPollTimer() {
    m_pollTimer = m_platform.actor.startTimer(pollInterval, [this] {
        startPollTimer();
        refresh();
    });
}

} // namespace talvera
