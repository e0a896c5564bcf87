// SPDX-License-Identifier: MIT
#include "shell/readiness/ReadinessMonitor.h"

#include "platform/desktop/ProgramActivation.h"
#include "platform/desktop/SessionAccess.h"
#include "platform/desktop/SettingsPanels.h"
#include "shell/readiness/MicrophoneLackText.h"
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

ReadinessMonitor::ReadinessMonitor(Parts parts)
    : micStatus(parts.microphone.status())
    , axTrusted(parts.access.lacks().empty())
    , inputMonitoringGranted(parts.access.canWatchKeys())
    , aiState(aiStateFor(parts.languageModel.unavailableReason()))
    , m_parts(parts)
    , m_microphoneChanges(parts.microphone.observe([this] { refresh(); }))
    , m_languageModelChanges(parts.languageModel.observe([this] { refresh(); }))
    , m_activations(parts.activation.observe([this] { refreshLater(); })) {
    applyPollRule();
}

ReadinessMonitor::~ReadinessMonitor() {
    if (m_pollTimer)
        m_parts.actor.cancelTimer(*m_pollTimer);
}

int ReadinessMonitor::missingCount() const {
    return (micStatus.get() == AuthorizationStatus::Authorized ? 0 : 1) + (axTrusted.get() ? 0 : 1);
}

QString ReadinessMonitor::microphoneLackText() const {
    return talvera::microphoneLackText(m_parts.microphone.lack());
}

QString ReadinessMonitor::accessibilityLackText() const {
    const auto lacks = m_parts.access.lacks();
    return lacks.empty() ? QString() : sessionLackText(lacks.front());
}

bool ReadinessMonitor::canAllowAccessibility() const {
    const auto lacks = m_parts.access.lacks();
    return !lacks.empty() &&
           (lacks.front() == SessionLack::Permission || lacks.front() == SessionLack::ExtensionOff);
}

void ReadinessMonitor::refresh() {
    const auto microphone = m_parts.microphone.status();
    const bool trusted = m_parts.access.lacks().empty();
    const bool inputMonitoring = m_parts.access.canWatchKeys();
    const auto ai = currentAIState();
    assignIfDifferent(micStatus, microphone);
    assignIfDifferent(axTrusted, trusted);
    assignIfDifferent(inputMonitoringGranted, inputMonitoring);
    assignIfDifferent(aiState, ai);
    applyPollRule();
}

void ReadinessMonitor::refreshLater() {
    m_parts.actor.post(m_lifetime.ifAlive([this] { refresh(); }));
}

AIAvailabilityState ReadinessMonitor::currentAIState() const {
    return aiStateFor(m_parts.languageModel.unavailableReason());
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
    m_parts.microphone.requestAccess(std::move(done));
}

std::optional<QString> ReadinessMonitor::openMicrophoneSettings() {
    if (m_parts.settingsPanels.open(SettingsPanels::Panel::Microphone))
        return std::nullopt;
    const auto lack = m_parts.microphone.lack();
    if (lack == MicrophoneLack::Server) // no microphone would help
        return talvera::microphoneLackText(lack);
    return localized("settings.none.microphone",
                     "Plug in a microphone, or allow one in this desktop's sound settings");
}

std::optional<QString> ReadinessMonitor::openAccessibilitySettings() {
    const auto lacks = m_parts.access.lacks();
    if (lacks.empty()) // it has been granted meanwhile
        return localized("settings.none.accessibility", "Nothing is missing any more");
    if (m_parts.access.give(lacks.front()))
        return std::nullopt;
    // A page that can't help would leave the user looking for what isn't there.
    if (lacks.front() == SessionLack::Permission &&
        m_parts.settingsPanels.open(SettingsPanels::Panel::Accessibility))
        return std::nullopt;
    return sessionLackText(lacks.front());
}

void ReadinessMonitor::applyPollRule() {
    const bool mayModelCome = aiState.get() == AIAvailabilityState::IntelligenceOff ||
                              aiState.get() == AIAvailabilityState::ModelNotReady;
    const bool mustRun = !isReady() || (mayModelCome && !m_parts.languageModel.tellsOfChanges());
    if (mustRun && !m_pollTimer) {
        startPollTimer();
    } else if (!mustRun && m_pollTimer) {
        m_parts.actor.cancelTimer(*m_pollTimer);
        m_pollTimer.reset();
    }
}

void ReadinessMonitor::startPollTimer() {
    m_pollTimer = m_parts.actor.startTimer(pollInterval, [this] {
        startPollTimer();
        refresh();
    });
}

} // namespace talvera
