// SPDX-License-Identifier: MIT
#include "InMemoryPreferenceStore.h"
#include "persistence/AppSettings.h"

#include <gtest/gtest.h>

using namespace talvera;
using test::InMemoryPreferenceStore;

namespace {

const auto defaultShortcut = HotkeyBinding::chord(0x1C0000, VirtualKey::T);
const auto defaultShortcutData = QByteArrayLiteral(R"({"chord":{"modifiers":1835008,"keyCode":17}})");
const auto fnData = QByteArrayLiteral(R"({"holdSpecial":{"_0":"fn"}})");

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

InMemoryPreferenceStore storeWith(std::map<QString, PreferenceValue> values) {
    InMemoryPreferenceStore store;
    store.values = std::move(values);
    return store;
}

struct Targets {
    QString target;
    QString last;
    bool operator==(const Targets&) const = default;
};

void PrintTo(const Targets& targets, std::ostream* out) {
    *out << targets.target.toStdString() << ", last " << targets.last.toStdString();
}

Targets targetsFrom(std::map<QString, PreferenceValue> values) {
    auto store = storeWith(std::move(values));
    const AppSettings settings(store);
    return {settings.targetLanguageCode.get(), settings.lastTargetLanguageCode.get()};
}

TEST(AppSettings, emptyStore_givesTheDefaults) {
    InMemoryPreferenceStore store;
    const AppSettings settings(store);
    EXPECT_EQ(settings.targetLanguageCode.get(), u"off");
    EXPECT_EQ(settings.lastTargetLanguageCode.get(), u"en");
    EXPECT_EQ(settings.sourceLanguageCode.get(), u"auto");
    EXPECT_EQ(settings.hotkeyBinding.get(),
              HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    EXPECT_FALSE(settings.aiCleanupEnabled.get());
    EXPECT_FALSE(settings.hasOnboarded.get());
    EXPECT_TRUE(settings.showMenuBarIcon.get());
    EXPECT_TRUE(settings.soundOnStart.get());
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Conversational);
    EXPECT_EQ(settings.startSoundName.get(), u"Submarine");
    EXPECT_FALSE(settings.hotkeyTapToToggle.get());
    EXPECT_EQ(settings.insertionMode.get(), InsertionMode::AutoByDuration);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 15.0);
    EXPECT_TRUE(settings.protectFocusTarget.get());
    EXPECT_EQ(settings.focusProtectionMode.get(), FocusProtectionMode::Reactivate);
    EXPECT_EQ(settings.appLanguage.get(), u"system");
    EXPECT_EQ(settings.translateToggleBinding.get(), defaultShortcut);
}

TEST(AppSettings, hotkeyOfTheSession_countsUntilTheUserChoosesOne) {
    const HotkeyBinding chord;
    InMemoryPreferenceStore store;
    const AppSettings settings(store, chord);
    EXPECT_EQ(settings.hotkeyBinding.get(), chord);
    EXPECT_EQ(settings.unchosenHotkey, chord);
    EXPECT_FALSE(store.values.contains(text("hotkeyBinding")));
    auto chosen = storeWith({{text("hotkeyBinding"), fnData}});
    EXPECT_EQ(AppSettings(chosen, chord).hotkeyBinding.get(),
              HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn));
}

TEST(AppSettings, emptyStore_holdsExactlyTheShortcutAndItsFlagAfterLoading) {
    InMemoryPreferenceStore store;
    const AppSettings settings(store);
    const std::map<QString, PreferenceValue> expected{
        {text("translateToggleBindingSet"), true},
        {text("translateToggleBinding"), defaultShortcutData},
    };
    EXPECT_EQ(store.values, expected);
}

TEST(AppSettings, fullStore_isLoadedAsItStands) {
    auto store = storeWith({
        {text("targetLanguageCode"), text("pt-BR")},
        {text("lastTargetLanguageCode"), text("ja")},
        {text("sourceLanguageCode"), text("de")},
        {text("hotkeyBinding"), QByteArrayLiteral(R"({"chord":{"modifiers":786432,"keyCode":49}})")},
        {text("aiCleanupEnabled"), true},
        {text("hasOnboarded"), true},
        {text("showMenuBarIcon"), false},
        {text("soundOnStart"), false},
        {text("cleanupTone"), text("professional")},
        {text("startSoundName"), text("Off")},
        {text("hotkeyTapToToggle"), true},
        {text("insertionMode"), text("paste")},
        {text("typewriterThresholdSeconds"), 7.5},
        {text("protectFocusTarget"), false},
        {text("focusProtectionMode"), text("clipboardOnly")},
        {text("appLanguage"), text("fr")},
        {text("translateToggleBindingSet"), true},
        {text("translateToggleBinding"), fnData},
    });
    const auto before = store.values;
    const AppSettings settings(store);
    EXPECT_EQ(store.values, before);
    EXPECT_EQ(settings.targetLanguageCode.get(), u"pt-BR");
    EXPECT_EQ(settings.lastTargetLanguageCode.get(), u"ja");
    EXPECT_EQ(settings.sourceLanguageCode.get(), u"de");
    EXPECT_EQ(settings.hotkeyBinding.get(), HotkeyBinding::chord(786432, VirtualKey::Space));
    EXPECT_TRUE(settings.aiCleanupEnabled.get());
    EXPECT_TRUE(settings.hasOnboarded.get());
    EXPECT_FALSE(settings.showMenuBarIcon.get());
    EXPECT_FALSE(settings.soundOnStart.get());
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Professional);
    EXPECT_EQ(settings.startSoundName.get(), u"Off");
    EXPECT_TRUE(settings.hotkeyTapToToggle.get());
    EXPECT_EQ(settings.insertionMode.get(), InsertionMode::Paste);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 7.5);
    EXPECT_FALSE(settings.protectFocusTarget.get());
    EXPECT_EQ(settings.focusProtectionMode.get(), FocusProtectionMode::ClipboardOnly);
    EXPECT_EQ(settings.appLanguage.get(), u"fr");
    EXPECT_EQ(settings.translateToggleBinding.get(),
              HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn));
}

TEST(AppSettings, legacyTranslateEnabled_becomesTheTarget) {
    EXPECT_EQ(targetsFrom({{text("translateEnabled"), true}}), (Targets{text("en"), text("en")}));
    EXPECT_EQ(targetsFrom({{text("translateEnabled"), false}}), (Targets{text("off"), text("en")}));
}

TEST(AppSettings, legacyTranslateEnabled_yieldsToAStoredTarget) {
    EXPECT_EQ(targetsFrom({{text("translateEnabled"), true}, {text("targetLanguageCode"), text("off")}}),
              (Targets{text("off"), text("en")}));
}

TEST(AppSettings, legacyMigration_isNotWrittenBack) {
    auto store = storeWith({{text("translateEnabled"), true}, {text("polishEnabled"), true}});
    const AppSettings settings(store);
    EXPECT_FALSE(store.values.contains(text("targetLanguageCode")));
    EXPECT_FALSE(store.values.contains(text("lastTargetLanguageCode")));
    EXPECT_FALSE(store.values.contains(text("aiCleanupEnabled")));
    EXPECT_EQ(store.values.at(text("translateEnabled")), PreferenceValue(true));
    EXPECT_EQ(store.values.at(text("polishEnabled")), PreferenceValue(true));
}

TEST(AppSettings, targetWithoutALastTarget_becomesTheLastTarget) {
    EXPECT_EQ(targetsFrom({{text("targetLanguageCode"), text("de")}}), (Targets{text("de"), text("de")}));
}

TEST(AppSettings, targetOff_keepsTheStoredLastTarget) {
    EXPECT_EQ(targetsFrom(
                  {{text("targetLanguageCode"), text("off")}, {text("lastTargetLanguageCode"), text("fr")}}),
              (Targets{text("off"), text("fr")}));
}

TEST(AppSettings, lastTargetOff_countsAsMissing) {
    EXPECT_EQ(targetsFrom(
                  {{text("targetLanguageCode"), text("off")}, {text("lastTargetLanguageCode"), text("off")}}),
              (Targets{text("off"), text("en")}));
    EXPECT_EQ(targetsFrom(
                  {{text("targetLanguageCode"), text("ja")}, {text("lastTargetLanguageCode"), text("off")}}),
              (Targets{text("ja"), text("ja")}));
}

TEST(AppSettings, lastTargetUnknown_countsAsMissing) {
    EXPECT_EQ(targetsFrom(
                  {{text("targetLanguageCode"), text("ja")}, {text("lastTargetLanguageCode"), text("tlh")}}),
              (Targets{text("ja"), text("ja")}));
}

TEST(AppSettings, targetUnknown_turnsTranslationOnToEnglish) {
    for (const auto* code : {"tlh", "", "OFF", "auto", "pt"}) {
        EXPECT_EQ(targetsFrom({{text("targetLanguageCode"), text(code)}}), (Targets{text("en"), text("en")}))
            << code;
    }
}

TEST(AppSettings, sourceLanguageUnknown_isTakenAsItStands) {
    auto store = storeWith({{text("sourceLanguageCode"), text("tlh")}});
    EXPECT_EQ(AppSettings(store).sourceLanguageCode.get(), u"tlh");
}

TEST(AppSettings, startSoundUnknown_isTakenAsItStandsAndStays) {
    for (const auto* name : {"Ding", "off", ""}) {
        auto store = storeWith({{text("startSoundName"), text(name)}});
        EXPECT_EQ(AppSettings(store).startSoundName.get(), text(name));
        EXPECT_EQ(store.values.at(text("startSoundName")), PreferenceValue(text(name)));
    }
}

TEST(AppSettings, cleanupFalseBesideLegacyTrue_staysFalse) {
    auto store = storeWith({{text("aiCleanupEnabled"), false}, {text("polishEnabled"), true}});
    EXPECT_FALSE(AppSettings(store).aiCleanupEnabled.get());
}

TEST(AppSettings, legacyPolishAlone_becomesCleanup) {
    for (const bool polish : {true, false}) {
        auto store = storeWith({{text("polishEnabled"), polish}});
        EXPECT_EQ(AppSettings(store).aiCleanupEnabled.get(), polish);
    }
}

TEST(AppSettings, unknownRawStrings_giveTheDefaults) {
    auto store = storeWith({{text("cleanupTone"), text("formal")},
                            {text("insertionMode"), text("typed")},
                            {text("focusProtectionMode"), text("x")}});
    const AppSettings settings(store);
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Conversational);
    EXPECT_EQ(settings.insertionMode.get(), InsertionMode::AutoByDuration);
    EXPECT_EQ(settings.focusProtectionMode.get(), FocusProtectionMode::Reactivate);
}

TEST(AppSettings, thresholdStoredAsText_is15Seconds) {
    auto store = storeWith({{text("typewriterThresholdSeconds"), text("20.0")}});
    EXPECT_EQ(AppSettings(store).typewriterThresholdSeconds.get(), 15.0);
}

TEST(AppSettings, thresholdStoredAsWholeNumber_isTaken) {
    auto store = storeWith({{text("typewriterThresholdSeconds"), std::int64_t{20}}});
    EXPECT_EQ(AppSettings(store).typewriterThresholdSeconds.get(), 20.0);
}

TEST(AppSettings, truthsOfAnotherType_giveTheDefaults) {
    for (const PreferenceValue& value :
         {PreferenceValue(text("no")), PreferenceValue(std::int64_t{7}), PreferenceValue(QStringList{}),
          PreferenceValue(QByteArrayLiteral("\0")), PreferenceValue(0.5)}) {
        auto store = storeWith({{text("showMenuBarIcon"), value},
                                {text("soundOnStart"), value},
                                {text("hotkeyTapToToggle"), value},
                                {text("protectFocusTarget"), value}});
        const AppSettings settings(store);
        EXPECT_TRUE(settings.showMenuBarIcon.get());
        EXPECT_TRUE(settings.soundOnStart.get());
        EXPECT_FALSE(settings.hotkeyTapToToggle.get());
        EXPECT_TRUE(settings.protectFocusTarget.get());
    }
}

TEST(AppSettings, hotkeyOfBadJson_givesTheDefaultAndLeavesTheDataUntilTheNextAssignment) {
    const auto bad = QByteArrayLiteral("{\"chord\":");
    auto store = storeWith({{text("hotkeyBinding"), bad}});
    AppSettings settings(store);
    EXPECT_EQ(settings.hotkeyBinding.get(),
              HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    EXPECT_EQ(store.values.at(text("hotkeyBinding")), PreferenceValue(bad));
    settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn));
    EXPECT_EQ(store.values.at(text("hotkeyBinding")), PreferenceValue(fnData));
}

TEST(AppSettings, hotkeyStoredAsText_givesTheDefault) {
    auto store = storeWith({{text("hotkeyBinding"), QString::fromUtf8(fnData)}});
    EXPECT_EQ(AppSettings(store).hotkeyBinding.get(),
              HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
}

TEST(AppSettings, shortcutSetButUnreadable_isLostAndItsDataDeleted) {
    auto store = storeWith({{text("translateToggleBindingSet"), true},
                            {text("translateToggleBinding"), QByteArrayLiteral("{}")}});
    EXPECT_EQ(AppSettings(store).translateToggleBinding.get(), std::nullopt);
    const std::map<QString, PreferenceValue> expected{{text("translateToggleBindingSet"), true}};
    EXPECT_EQ(store.values, expected);
}

TEST(AppSettings, shortcutWithoutItsFlag_isReplacedByTheDefault) {
    auto store = storeWith({{text("translateToggleBinding"), fnData}});
    EXPECT_EQ(AppSettings(store).translateToggleBinding.get(), defaultShortcut);
    EXPECT_EQ(store.values.at(text("translateToggleBinding")), PreferenceValue(defaultShortcutData));
}

TEST(AppSettings, shortcutCleared_staysClearedAfterARelaunch) {
    InMemoryPreferenceStore store;
    AppSettings(store).translateToggleBinding.set(std::nullopt);
    EXPECT_FALSE(store.values.contains(text("translateToggleBinding")));
    EXPECT_EQ(AppSettings(store).translateToggleBinding.get(), std::nullopt);
}

} // namespace
