// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyPresets.h"

#include "PrintQt.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>

using namespace talvera;

namespace {

/// What a user reads of a preset.
QStringList textsOf(const HotkeyPreset& preset) {
    return QStringList{preset.id, preset.keys.join(u'|'), preset.settingsLabel, preset.onboardingLabel,
                       preset.onboardingDescription};
}

TEST(HotkeyPresets, order_isRightCommandFnChordCapsLock) {
    using Key = HotkeyBinding::SpecialKey;
    const auto presets = hotkeyPresets();
    EXPECT_EQ(presets[0].binding, HotkeyBinding::holdSpecial(Key::RightCommand));
    EXPECT_EQ(presets[1].binding, HotkeyBinding::holdSpecial(Key::Fn));
    EXPECT_EQ(presets[2].binding,
              HotkeyBinding::chord(KeyFlag::Control | KeyFlag::Option, VirtualKey::Space));
    EXPECT_EQ(presets[3].binding, HotkeyBinding::holdSpecial(Key::CapsLock));
}

TEST(HotkeyPresets, onlyTheFirst_isRecommended) {
    std::vector<bool> recommended;
    for (const auto& preset : hotkeyPresets())
        recommended.push_back(preset.recommended);
    EXPECT_EQ(recommended, (std::vector{true, false, false, false}));
}

TEST(HotkeyPresets, whereNoKeyIsHeardAlone_theChordIsRecommended) {
    const auto chord = defaultHotkey(false);
    EXPECT_EQ(chord, HotkeyBinding());
    for (const auto& preset : hotkeyPresets(chord))
        EXPECT_EQ(preset.recommended, preset.id == "default");
}

TEST(HotkeyPresets, rightOption_isInNone) {
    const auto rightOption = HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightOption);
    EXPECT_TRUE(std::ranges::none_of(hotkeyPresets(),
                                     [&](const auto& preset) { return preset.binding == rightOption; }));
}

TEST(HotkeyPresets, withoutACatalog_readTheirDefaults) {
    const auto presets = hotkeyPresets();
    EXPECT_EQ(textsOf(presets[0]), QStringList({"rcmd", "Right ⌘", "Right Command hold", "Right Command",
                                                "Hold right ⌘. No system conflicts on any Apple hardware."}));
    EXPECT_EQ(textsOf(presets[1]), QStringList({"fn", "fn", "Globe / Fn hold", "Globe / Fn",
                                                "Hold the globe key. One hand, no conflicts."}));
    EXPECT_EQ(textsOf(presets[2]),
              QStringList({"default", "⌃|⌥|Space", "Control + Option + Space", "Control + Option + Space",
                           "Classic chord. Press and hold."}));
    EXPECT_EQ(textsOf(presets[3]),
              QStringList({"caps", "⇪", "Caps Lock hold", "Caps Lock", "Repurposes caps lock."}));
}

/// Tells each text's key in place of a text.
class KeysAsTexts final : public QTranslator {
public:
    QString translate(const char*, const char* key, const char*, int) const override {
        return QStringLiteral("<%1>").arg(QLatin1String(key));
    }
    bool isEmpty() const override { return false; }
};

TEST(HotkeyPresets, inTheCatalogs_haveTheirKeys) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    KeysAsTexts catalog;
    ASSERT_TRUE(QCoreApplication::installTranslator(&catalog));
    const auto presets = hotkeyPresets();
    for (const auto& preset : presets) {
        EXPECT_EQ(preset.settingsLabel, "<settings.hotkey.preset." + preset.id + ">");
        EXPECT_EQ(preset.onboardingLabel, "<onboarding.hotkey.preset." + preset.id + ".label>");
        EXPECT_EQ(preset.onboardingDescription, "<onboarding.hotkey.preset." + preset.id + ".desc>");
    }
    EXPECT_EQ(presets[2].keys,
              QStringList({"<hotkey.cap.control>", "<hotkey.cap.option>", "<hotkey.key.space>"}));
}

} // namespace
