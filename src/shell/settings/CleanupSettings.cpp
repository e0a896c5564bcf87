// SPDX-License-Identifier: MIT
#include "shell/settings/CleanupSettings.h"

#include "persistence/AppSettings.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "text/Localization.h"

#include <utility>

namespace talvera {

namespace {

RowText toneText() {
    return {localized("settings.aiCleanup.tone.title", "Tone"),
            localized("settings.aiCleanup.tone.subtitle",
                      "How much to polish. “Off” disables cleanup entirely.")};
}

std::vector<ChoiceRow::Choice> tones() {
    return {{rawValue(CleanupTone::Off), localized("settings.aiCleanup.tone.off", "Off")},
            {rawValue(CleanupTone::Conversational),
             localized("settings.aiCleanup.tone.conversational", "Conversational")},
            {rawValue(CleanupTone::Casual), localized("settings.aiCleanup.tone.casual", "Casual")},
            {rawValue(CleanupTone::Professional),
             localized("settings.aiCleanup.tone.professional", "Professional")}};
}

} // namespace

CleanupSettings::CleanupSettings(Parts parts)
    : m_parts(std::move(parts))
    , m_tone(toneText(), tones(), bound(m_parts.settings.cleanupTone))
    , m_modelChanges(
          m_parts.readiness.aiState.observe([this](AIAvailabilityState) { Q_EMIT modelChanged(); })) {}

AIAvailabilityState CleanupSettings::state() const {
    return m_parts.readiness.aiState.get();
}

QString CleanupSettings::fillerTitle() const {
    return localized("settings.aiCleanup.fillerWords.title", "Remove filler words");
}

QString CleanupSettings::fillerSubtitle() const {
    return localized("settings.aiCleanup.fillerWords.subtitle", "Drop “um”, “uh”, “like”, and false starts.");
}

QString CleanupSettings::modelTitle() const {
    return localized("settings.aiCleanup.infoCard.title", "On this computer");
}

QString CleanupSettings::modelText() const {
    switch (state()) {
    case AIAvailabilityState::Available:
        return localized("settings.aiCleanup.infoCard.available",
                         "Cleanup runs on-device via Apple Intelligence. Nothing leaves your Mac.");
    case AIAvailabilityState::IntelligenceOff:
        return localized("settings.aiCleanup.infoCard.intelligenceOff",
                         "Apple Intelligence is off — enable it in System Settings to use cleanup.");
    case AIAvailabilityState::DeviceNotEligible:
        return localized("settings.aiCleanup.infoCard.deviceNotEligible",
                         "Apple Intelligence isn't available on this Mac.");
    case AIAvailabilityState::ModelNotReady:
        return localized("settings.aiCleanup.infoCard.modelNotReady",
                         "Apple Intelligence is still getting ready. Try again in a few minutes.");
    case AIAvailabilityState::UnsupportedOS:
        break;
    }
    return localized("settings.aiCleanup.infoCard.unsupportedOS", "Cleanup requires macOS 26 or later.");
}

bool CleanupSettings::isModelAvailable() const {
    return state() == AIAvailabilityState::Available;
}

QString CleanupSettings::openModelSettingsText() const {
    return state() == AIAvailabilityState::IntelligenceOff
               ? localized("settings.aiCleanup.openSettings", "Open System Settings")
               : QString();
}

} // namespace talvera
