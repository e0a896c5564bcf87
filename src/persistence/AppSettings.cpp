// SPDX-License-Identifier: MIT
#include "persistence/AppSettings.h"

#include "language/TargetLanguage.h"
#include "platform/keyboard/EventTap.h"

#include <algorithm>

namespace talvera {

namespace {

const auto off = QStringLiteral("off");
const auto english = QStringLiteral("en");

namespace PreferenceKey {
const auto targetLanguageCode = QStringLiteral("targetLanguageCode");
const auto lastTargetLanguageCode = QStringLiteral("lastTargetLanguageCode");
const auto hotkeyBinding = QStringLiteral("hotkeyBinding");
const auto aiCleanupEnabled = QStringLiteral("aiCleanupEnabled");
const auto hasOnboarded = QStringLiteral("hasOnboarded");
const auto soundOnStart = QStringLiteral("soundOnStart");
const auto typewriterThresholdSeconds = QStringLiteral("typewriterThresholdSeconds");
const auto appLanguage = QStringLiteral("appLanguage");
const auto translateToggleBinding = QStringLiteral("translateToggleBinding");

// Without a setting of their own. The two "...Enabled" come from older versions: read, but left as they are.
const auto translateEnabled = QStringLiteral("translateEnabled");
const auto polishEnabled = QStringLiteral("polishEnabled");
const auto translateToggleBindingSet = QStringLiteral("translateToggleBindingSet");
const auto appleLanguages = QStringLiteral("AppleLanguages");
} // namespace PreferenceKey

// What is loaded. A stored value that can't be read counts as none.

bool isTarget(const QString& code) {
    const auto& rows = TargetLanguage::all();
    return std::any_of(rows.begin(), rows.end(), [&](const auto& row) { return row.code == code; });
}

QString loadTarget(const PreferenceStore& store) {
    const auto fallback = store.boolean(PreferenceKey::translateEnabled) ? english : off;
    const auto target = store.string(PreferenceKey::targetLanguageCode).value_or(fallback);
    // A code that has gone from the table still says that the user wants a translation.
    return isTarget(target) ? target : english;
}

QString loadLastTarget(const PreferenceStore& store, const QString& target) {
    const auto last = store.string(PreferenceKey::lastTargetLanguageCode).value_or(QString());
    if (last != off && isTarget(last))
        return last;
    return target == off ? english : target;
}

bool loadCleanupEnabled(const PreferenceStore& store) {
    return store.boolean(store.object(PreferenceKey::aiCleanupEnabled) ? PreferenceKey::aiCleanupEnabled
                                                                       : PreferenceKey::polishEnabled);
}

std::optional<HotkeyBinding> loadBinding(const PreferenceStore& store, const QString& key) {
    const auto data = store.data(key);
    if (!data)
        return std::nullopt;
    try {
        return HotkeyBinding::decoded(*data);
    } catch (const HotkeyBinding::DecodingError&) {
        return std::nullopt;
    }
}

std::optional<HotkeyBinding> loadTranslateToggle(const PreferenceStore& store) {
    if (!store.boolean(PreferenceKey::translateToggleBindingSet))
        return HotkeyBinding::chord(KeyFlag::Control | KeyFlag::Option | KeyFlag::Command, VirtualKey::T);
    return loadBinding(store, PreferenceKey::translateToggleBinding);
}

// What is stored.

PreferenceValue stored(bool value) {
    return value;
}

PreferenceValue stored(double value) {
    return value;
}

PreferenceValue stored(const QString& value) {
    return value;
}

PreferenceValue stored(const HotkeyBinding& value) {
    return value.encoded();
}

template <NamedCases Enum>
PreferenceValue stored(Enum value) {
    return rawValue(value);
}

template <typename T>
Setting<T> setting(PreferenceStore& store, const QString& key, T loaded) {
    return {key, std::move(loaded), [&store, key](const T& value) { store.set(key, stored(value)); }};
}

Setting<QString> stringSetting(PreferenceStore& store, const QString& key, const QString& fallback) {
    return setting(store, key, store.string(key).value_or(fallback));
}

Setting<bool> boolSetting(PreferenceStore& store, const QString& key, bool fallback) {
    return setting(store, key, store.asBool(key).value_or(fallback));
}

template <NamedCases Enum>
Setting<Enum> enumSetting(PreferenceStore& store, const QString& key, Enum fallback) {
    return setting(store, key, fromRawValue<Enum>(store.string(key).value_or(QString())).value_or(fallback));
}

void writeLanguage(PreferenceStore& store, const QString& language) {
    store.set(PreferenceKey::appLanguage, language);
    if (language == u"system")
        store.remove(PreferenceKey::appleLanguages);
    else
        store.set(PreferenceKey::appleLanguages, QStringList{language});
}

void writeTranslateToggle(PreferenceStore& store, const std::optional<HotkeyBinding>& binding) {
    // Tells a user who has cleared the shortcut from one who never had it.
    store.set(PreferenceKey::translateToggleBindingSet, true);
    if (binding)
        store.set(PreferenceKey::translateToggleBinding, stored(*binding));
    else
        store.remove(PreferenceKey::translateToggleBinding);
}

} // namespace

AppSettings::AppSettings(PreferenceStore& store, const HotkeyBinding& unchosen)
    : unchosenHotkey(unchosen)
    , targetLanguageCode(PreferenceKey::targetLanguageCode, loadTarget(store),
                         [this, &store](const QString& code) {
                             store.set(PreferenceKey::targetLanguageCode, code);
                             if (code != off)
                                 lastTargetLanguageCode.set(code);
                         })
    , lastTargetLanguageCode(setting(store, PreferenceKey::lastTargetLanguageCode,
                                     loadLastTarget(store, targetLanguageCode.get())))
    , sourceLanguageCode(stringSetting(store, QStringLiteral("sourceLanguageCode"), QStringLiteral("auto")))
    , hotkeyBinding(setting(store, PreferenceKey::hotkeyBinding,
                            loadBinding(store, PreferenceKey::hotkeyBinding).value_or(unchosen)))
    , aiCleanupEnabled(setting(store, PreferenceKey::aiCleanupEnabled, loadCleanupEnabled(store)))
    , hasOnboarded(setting(store, PreferenceKey::hasOnboarded, store.boolean(PreferenceKey::hasOnboarded)))
    , showMenuBarIcon(boolSetting(store, QStringLiteral("showMenuBarIcon"), true))
    , soundOnStart(PreferenceKey::soundOnStart, store.asBool(PreferenceKey::soundOnStart).value_or(true),
                   [](bool) {})
    , cleanupTone(enumSetting(store, QStringLiteral("cleanupTone"), CleanupTone::Conversational))
    , startSoundName(stringSetting(store, QStringLiteral("startSoundName"), QStringLiteral("Submarine")))
    , hotkeyTapToToggle(boolSetting(store, QStringLiteral("hotkeyTapToToggle"), false))
    , insertionMode(enumSetting(store, QStringLiteral("insertionMode"), InsertionMode::AutoByDuration))
    , typewriterThresholdSeconds(
          setting(store, PreferenceKey::typewriterThresholdSeconds,
                  store.asDouble(PreferenceKey::typewriterThresholdSeconds).value_or(15.0)))
    , protectFocusTarget(boolSetting(store, QStringLiteral("protectFocusTarget"), true))
    , focusProtectionMode(
          enumSetting(store, QStringLiteral("focusProtectionMode"), FocusProtectionMode::Reactivate))
    , appLanguage(PreferenceKey::appLanguage,
                  store.string(PreferenceKey::appLanguage).value_or(QStringLiteral("system")),
                  [&store](const QString& language) { writeLanguage(store, language); })
    , translateToggleBinding(PreferenceKey::translateToggleBinding, std::nullopt,
                             [&store](const auto& binding) { writeTranslateToggle(store, binding); }) {
    // By assignment, so that the default is recorded once and never comes back after the user has cleared it.
    translateToggleBinding.set(loadTranslateToggle(store));
}

} // namespace talvera
