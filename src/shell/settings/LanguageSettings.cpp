// SPDX-License-Identifier: MIT
#include "shell/settings/LanguageSettings.h"

#include "language/Language.h"
#include "language/TargetLanguage.h"
#include "persistence/AppSettings.h"
#include "shell/texts/languageName.h"
#include "text/Localization.h"

namespace talvera {

namespace {

using Choices = std::vector<ChoiceRow::Choice>;

QString off() {
    return QStringLiteral("off");
}

RowText sourceText() {
    return {localized("settings.language.sourceLanguage.title", "Source language"),
            localized("settings.language.sourceLanguage.subtitle", "Auto-detect works for 99+ languages.")};
}

Choices sources() {
    Choices choices;
    for (const auto& language : Language::all())
        choices.push_back({language.code, languageName(language.code, language.displayName)});
    return choices;
}

/// A stored code without a row stands for finding out.
Binding<QString> sourceOf(AppSettings& settings) {
    auto& setting = settings.sourceLanguageCode;
    return boundAs<QString, QString>(
        setting, [](const QString& code) { return Language::byCode(code).code; },
        [&setting](const QString& code) { setting.set(code); });
}

RowText translateText() {
    return {localized("settings.language.translate.title", "Translate"),
            localized("settings.language.translate.subtitle",
                      "Speak in one language, get the output in another.")};
}

/// Translation is on while there is a target, and comes back with the last one.
Binding<bool> translationOf(AppSettings& settings) {
    auto& target = settings.targetLanguageCode;
    return boundAs<bool, QString>(
        target, [](const QString& code) { return code != off(); },
        [&target, &last = settings.lastTargetLanguageCode](const bool& on) {
            if (!on)
                target.set(off());
            else if (target.get() == off())
                target.set(last.get());
        });
}

RowText targetText() {
    return {localized("settings.language.translateTo.title", "Translate to"),
            localized("settings.language.translateTo.subtitle",
                      "Apple Intelligence handles most; others fall back to Whisper (English only).")};
}

Choices targets() {
    Choices choices;
    for (const auto& language : TargetLanguage::all()) {
        if (language.code != off())
            choices.push_back({language.code, languageName(language.code, language.displayName)});
    }
    return choices;
}

} // namespace

LanguageSettings::LanguageSettings(AppSettings& settings, HotkeyRecorderModel& toggle)
    : m_settings(settings)
    , m_toggle(toggle)
    , m_source(sourceText(), sources(), sourceOf(settings))
    , m_translate(translateText(), translationOf(settings))
    , m_target(targetText(), targets(), bound(settings.targetLanguageCode))
    , m_toggleChanges(
          settings.translateToggleBinding.observe([this](const auto&) { Q_EMIT toggleChanged(); })) {
    m_target.showWhile([this] { return m_translate.isOn(); });
}

QString LanguageSettings::toggleTitle() const {
    return localized("settings.language.translateToggle.title", "Translate shortcut");
}

QString LanguageSettings::toggleSubtitle() const {
    return localized("settings.language.translateToggle.subtitle",
                     "Press to switch translation on or off. Tap the field to record a new shortcut.");
}

QString LanguageSettings::toggleAbsent() const {
    return localized("settings.language.translateToggle.disabled", "Not set");
}

QString LanguageSettings::toggleClear() const {
    return localized("settings.language.translateToggle.clear", "Clear");
}

bool LanguageSettings::hasToggle() const {
    return m_settings.translateToggleBinding.get().has_value();
}

} // namespace talvera
