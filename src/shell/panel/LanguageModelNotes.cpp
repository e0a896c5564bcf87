// SPDX-License-Identifier: MIT
#include "shell/panel/LanguageModelNotes.h"

#include "text/Localization.h"

namespace talvera {

namespace {

LanguageModelNotes notesOfAvailableModel(bool cleanupEnabled) {
    LanguageModelNotes notes;
    if (cleanupEnabled) {
        const auto model = localized("menu.aiCleanup.model", "Apple Intelligence");
        notes.remark = formatted(localized("menu.aiCleanup.using", "Using %@"), model);
        notes.isInUse = true;
    }
    notes.footer = localized("menu.language.footer.addMore", "Add more languages in System Settings");
    notes.footerActs = true;
    return notes;
}

LanguageModelNotes notesOfModelThatIsOff() {
    LanguageModelNotes notes;
    notes.remark = localized(
        "menu.aiOff.hint", "Apple Intelligence requires Mac and Siri to use the same language. Match them in "
                           "System Settings → Apple Intelligence & Siri → Language.");
    notes.cure = localized("menu.aiOff.openSettings", "Apple Intelligence is off — open System Settings");
    notes.footer = notes.cure;
    notes.footerHelp = notes.remark;
    notes.footerIsWarning = true;
    notes.footerActs = true;
    return notes;
}

/// Nothing to mend, and not for long.
LanguageModelNotes notesOfModelThatLoads() {
    LanguageModelNotes notes;
    notes.remark = localized("menu.aiCleanup.loading", "The language model is still loading");
    notes.footer = notes.remark;
    return notes;
}

LanguageModelNotes notesWithoutModel() {
    LanguageModelNotes notes;
    notes.remark = localized("menu.aiCleanup.noModel", "Needs a language model, and this computer has none");
    notes.footer = localized("menu.language.footer.noModel",
                             "The other languages need a language model, and this computer has none");
    return notes;
}

} // namespace

LanguageModelNotes languageModelNotes(AIAvailabilityState state, bool cleanupEnabled) {
    switch (state) {
    case AIAvailabilityState::Available:
        return notesOfAvailableModel(cleanupEnabled);
    case AIAvailabilityState::IntelligenceOff:
        return notesOfModelThatIsOff();
    case AIAvailabilityState::ModelNotReady:
        return notesOfModelThatLoads();
    case AIAvailabilityState::DeviceNotEligible:
    case AIAvailabilityState::UnsupportedOS:
        break;
    }
    return notesWithoutModel();
}

} // namespace talvera
