// SPDX-License-Identifier: MIT
#include "InMemoryPreferenceStore.h"
#include "SimulatedMainActor.h"
#include "persistence/AppSettings.h"

#include <gtest/gtest.h>

using namespace talvera;
using test::InMemoryPreferenceStore;

namespace {

QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

/// Writes down, in order, who was told and what was stored.
class RecordingStore final : public PreferenceStore {
public:
    std::optional<PreferenceValue> object(const QString& key) const override { return m_inner.object(key); }
    void set(const QString& key, const PreferenceValue& value) override {
        events << QStringLiteral("set ") + key;
        m_inner.set(key, value);
    }
    void remove(const QString& key) override {
        events << QStringLiteral("remove ") + key;
        m_inner.remove(key);
    }

    QStringList events;

private:
    InMemoryPreferenceStore m_inner;
};

TEST(AppSettings, everySetting_survivesARelaunch) {
    InMemoryPreferenceStore store;
    AppSettings first(store);
    first.targetLanguageCode.set(text("ko"));
    first.sourceLanguageCode.set(text("uk"));
    first.hotkeyBinding.set(HotkeyBinding::chord(0xC0000, VirtualKey::Space));
    first.aiCleanupEnabled.set(true);
    first.hasOnboarded.set(true);
    first.showMenuBarIcon.set(false);
    first.cleanupTone.set(CleanupTone::Casual);
    first.startSoundName.set(text("Tink"));
    first.hotkeyTapToToggle.set(true);
    first.insertionMode.set(InsertionMode::Paste);
    first.typewriterThresholdSeconds.set(12);
    first.protectFocusTarget.set(false);
    first.focusProtectionMode.set(FocusProtectionMode::ClipboardOnly);
    first.appLanguage.set(text("zh-Hans"));
    first.translateToggleBinding.set(HotkeyBinding::chord(0x100000, VirtualKey::F));
    const AppSettings second(store);
    EXPECT_EQ(second.targetLanguageCode.get(), u"ko");
    EXPECT_EQ(second.lastTargetLanguageCode.get(), u"ko");
    EXPECT_EQ(second.sourceLanguageCode.get(), u"uk");
    EXPECT_EQ(second.hotkeyBinding.get(), HotkeyBinding::chord(0xC0000, VirtualKey::Space));
    EXPECT_TRUE(second.aiCleanupEnabled.get());
    EXPECT_TRUE(second.hasOnboarded.get());
    EXPECT_FALSE(second.showMenuBarIcon.get());
    EXPECT_EQ(second.cleanupTone.get(), CleanupTone::Casual);
    EXPECT_EQ(second.startSoundName.get(), u"Tink");
    EXPECT_TRUE(second.hotkeyTapToToggle.get());
    EXPECT_EQ(second.insertionMode.get(), InsertionMode::Paste);
    EXPECT_EQ(second.typewriterThresholdSeconds.get(), 12.0);
    EXPECT_FALSE(second.protectFocusTarget.get());
    EXPECT_EQ(second.focusProtectionMode.get(), FocusProtectionMode::ClipboardOnly);
    EXPECT_EQ(second.appLanguage.get(), u"zh-Hans");
    EXPECT_EQ(second.translateToggleBinding.get(), HotkeyBinding::chord(0x100000, VirtualKey::F));
    EXPECT_EQ(store.values.at(text("typewriterThresholdSeconds")), PreferenceValue(12.0));
}

TEST(AppSettings, assignment_publishesBeforeItWrites) {
    RecordingStore store;
    AppSettings settings(store);
    store.events.clear();
    const auto subscription =
        settings.aiCleanupEnabled.observe([&](bool) { store.events << text("published"); });
    settings.aiCleanupEnabled.set(true);
    EXPECT_EQ(store.events, (QStringList{text("published"), text("set aiCleanupEnabled")}));
}

TEST(AppSettings, assignmentOfAnEqualValue_publishesAndWritesAgain) {
    RecordingStore store;
    AppSettings settings(store);
    store.events.clear();
    const auto subscription = settings.hasOnboarded.observe([&](bool) { store.events << text("published"); });
    settings.hasOnboarded.set(true);
    settings.hasOnboarded.set(true);
    const QStringList once{text("published"), text("set hasOnboarded")};
    EXPECT_EQ(store.events, once + once);
}

TEST(AppSettings, assignmentFromWithinAnObserver_leavesStoreAndMemoryAlike) {
    InMemoryPreferenceStore store;
    AppSettings settings(store);
    const auto subscription = settings.startSoundName.observe([&](const QString& name) {
        if (name == u"Nonsense")
            settings.startSoundName.set(text("Tink"));
    });
    settings.startSoundName.set(text("Nonsense"));
    EXPECT_EQ(settings.startSoundName.get(), u"Tink");
    EXPECT_EQ(store.values.at(text("startSoundName")), PreferenceValue(text("Tink")));
}

TEST(AppSettings, assignmentOfATarget_thenPublishesAndWritesTheLastTarget) {
    RecordingStore store;
    AppSettings settings(store);
    store.events.clear();
    const auto target = settings.targetLanguageCode.observe(
        [&](const QString& code) { store.events << text("target ") + code; });
    const auto last = settings.lastTargetLanguageCode.observe(
        [&](const QString& code) { store.events << text("last ") + code; });
    settings.targetLanguageCode.set(text("es"));
    EXPECT_EQ(store.events, (QStringList{text("target es"), text("set targetLanguageCode"), text("last es"),
                                         text("set lastTargetLanguageCode")}));
    store.events.clear();
    settings.targetLanguageCode.set(text("off"));
    EXPECT_EQ(store.events, (QStringList{text("target off"), text("set targetLanguageCode")}));
    EXPECT_EQ(settings.lastTargetLanguageCode.get(), u"es");
}

TEST(AppSettings, targetOffThenSpanish_makesSpanishTheLastTarget) {
    InMemoryPreferenceStore store;
    AppSettings settings(store);
    settings.targetLanguageCode.set(text("off"));
    EXPECT_EQ(settings.lastTargetLanguageCode.get(), u"en");
    settings.targetLanguageCode.set(text("es"));
    EXPECT_EQ(settings.lastTargetLanguageCode.get(), u"es");
}

TEST(AppSettings, appLanguage_setsAndClearsTheOverride) {
    InMemoryPreferenceStore store;
    AppSettings settings(store);
    settings.appLanguage.set(text("fr"));
    EXPECT_EQ(store.values.at(text("AppleLanguages")), PreferenceValue(QStringList{text("fr")}));
    settings.appLanguage.set(text("system"));
    EXPECT_FALSE(store.values.contains(text("AppleLanguages")));
    EXPECT_EQ(store.values.at(text("appLanguage")), PreferenceValue(text("system")));
}

TEST(AppSettings, soundOnStart_isNeverWritten) {
    RecordingStore store;
    AppSettings settings(store);
    store.events.clear();
    settings.soundOnStart.set(false);
    EXPECT_FALSE(settings.soundOnStart.get());
    EXPECT_TRUE(store.events.isEmpty());
}

TEST(AppSettings, clearingTheShortcut_setsTheFlagBeforeItRemovesTheData) {
    RecordingStore store;
    AppSettings settings(store);
    store.events.clear();
    settings.translateToggleBinding.set(std::nullopt);
    EXPECT_EQ(store.events,
              (QStringList{text("set translateToggleBindingSet"), text("remove translateToggleBinding")}));
}

TEST(AppSettings, subscriber_getsThePresentValueInATurnOfItsOwn) {
    test::SimulatedMainActor actor;
    InMemoryPreferenceStore store;
    AppSettings settings(store);
    std::vector<bool> heard;
    const auto subscription =
        settings.hasOnboarded.subscribe(actor, [&](bool value) { heard.push_back(value); });
    EXPECT_TRUE(heard.empty());
    settings.hasOnboarded.set(true);
    actor.settle();
    EXPECT_EQ(heard, (std::vector{false, true}));
}

TEST(AppSettings, visit_goesThroughAllInTheOrderOfDeclaration) {
    InMemoryPreferenceStore store;
    AppSettings settings(store);
    QStringList keys;
    settings.visit([&](const auto& setting) { keys << setting.key(); });
    EXPECT_EQ(keys.join(u' ').toStdString(),
              "targetLanguageCode lastTargetLanguageCode sourceLanguageCode hotkeyBinding aiCleanupEnabled "
              "hasOnboarded showMenuBarIcon soundOnStart cleanupTone startSoundName hotkeyTapToToggle "
              "insertionMode typewriterThresholdSeconds protectFocusTarget focusProtectionMode appLanguage "
              "translateToggleBinding");
}

} // namespace
