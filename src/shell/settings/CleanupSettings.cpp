// SPDX-License-Identifier: MIT
#include "shell/settings/CleanupSettings.h"

#include "persistence/AppSettings.h"
#include "platform/language/LanguageModel.h"
#include "shell/readiness/ReadinessMonitor.h"
#include "text/Localization.h"

#include <algorithm>
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

RowText modelsText() {
    return {localized("settings.aiCleanup.models.title", "Language model"),
            localized("settings.aiCleanup.models.subtitle", "The one that cleans up and translates.")};
}

} // namespace

CleanupSettings::CleanupSettings(Parts parts)
    : m_parts(std::move(parts))
    , m_tone(toneText(), tones(), bound(m_parts.settings.cleanupTone))
    , m_models(modelsText(), choicesOfModels(),
               {.read = [this] { return chosenModel(); },
                .assign =
                    [this](const QString& id) {
                        m_parts.choice.choose(id);
                        followModels();
                    },
                .observe = nullptr})
    , m_stateChanges(
          m_parts.readiness.aiState.observe([this](AIAvailabilityState) { Q_EMIT modelChanged(); }))
    , m_modelChanges(m_parts.model.observe([this] { followModels(); })) {
    m_models.showWhile([this] { return !knownModels().empty(); });
}

void CleanupSettings::appear() {
    m_parts.choice.look();
    followModels();
}

void CleanupSettings::followModels() {
    m_models.setChoices(choicesOfModels());
    Q_EMIT modelChanged();
}

/// With the one that should be there, and isn't.
std::vector<LanguageModelChoice::Offer> CleanupSettings::knownModels() const {
    auto models = m_parts.choice.offers();
    if (const auto missing = m_parts.choice.missing())
        models.insert(models.begin(), *missing);
    return models;
}

QString CleanupSettings::chosenModel() const {
    const auto missing = m_parts.choice.missing();
    return missing ? missing->id : m_parts.choice.chosen();
}

/// "None" is among them where taking the choice back leaves none.
std::vector<ChoiceRow::Choice> CleanupSettings::choicesOfModels() const {
    std::vector<ChoiceRow::Choice> choices;
    if (m_parts.choice.automatic().isEmpty())
        choices.push_back({{}, localized("settings.aiCleanup.models.none", "None")});
    const auto models = knownModels();
    const auto missing = m_parts.choice.missing();
    for (const auto& model : models) {
        const auto alike = std::count_if(models.begin(), models.end(),
                                         [&](const auto& other) { return other.name == model.name; });
        const auto name = alike == 1 ? model.name : QStringLiteral("%1 (%2)").arg(model.name, model.id);
        choices.push_back(
            {model.id, missing && missing->id == model.id
                           ? formatted(localized("settings.aiCleanup.models.missing", "%@ – not found"), name)
                           : name});
    }
    return choices;
}

bool CleanupSettings::offersToAddModel() const {
    return m_models.isShown() && openModelSettingsText().isEmpty();
}

QString CleanupSettings::addModelTitle() const {
    return localized("settings.aiCleanup.addModel.title", "Add a model");
}

QString CleanupSettings::addModelSubtitle() const {
    return localized("settings.aiCleanup.addModel.subtitle",
                     "A file in the folder tells what belongs there.");
}

QString CleanupSettings::addModelText() const {
    return localized("settings.aiCleanup.addModel.open", "Open folder");
}

AIAvailabilityState CleanupSettings::state() const {
    return m_parts.readiness.aiState.get();
}

/// Nobody has turned it off then: it is missing, and the rows below lead to it or to another one.
bool CleanupSettings::isModelGone() const {
    return state() == AIAvailabilityState::IntelligenceOff && m_parts.choice.missing().has_value();
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
        if (isModelGone())
            return localized(
                "settings.aiCleanup.infoCard.modelGone",
                "The chosen language model can't be found. Choose another one, or bring it back.");
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
    return state() == AIAvailabilityState::IntelligenceOff && !isModelGone()
               ? localized("settings.aiCleanup.openSettings", "Open System Settings")
               : QString();
}

} // namespace talvera
