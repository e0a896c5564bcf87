// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyPresets.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace talvera;

namespace {

TEST(HotkeyPresets, order_isRightCommandFnChordCapsLock) {
    using Key = HotkeyBinding::SpecialKey;
    const auto& presets = hotkeyPresets();
    EXPECT_STREQ(presets[0].id, "rcmd");
    EXPECT_EQ(presets[0].binding, HotkeyBinding::holdSpecial(Key::RightCommand));
    EXPECT_STREQ(presets[1].id, "fn");
    EXPECT_EQ(presets[1].binding, HotkeyBinding::holdSpecial(Key::Fn));
    EXPECT_STREQ(presets[2].id, "default");
    EXPECT_EQ(presets[2].binding, HotkeyBinding());
    EXPECT_STREQ(presets[3].id, "caps");
    EXPECT_EQ(presets[3].binding, HotkeyBinding::holdSpecial(Key::CapsLock));
}

TEST(HotkeyPresets, onlyTheFirst_isRecommended) {
    std::vector<bool> recommended;
    for (const auto& preset : hotkeyPresets())
        recommended.push_back(preset.recommended);
    EXPECT_EQ(recommended, (std::vector{true, false, false, false}));
}

TEST(HotkeyPresets, rightOption_isInNone) {
    const auto rightOption = HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightOption);
    EXPECT_TRUE(std::ranges::none_of(hotkeyPresets(),
                                     [&](const auto& preset) { return preset.binding == rightOption; }));
}

TEST(HotkeyPresets, texts_areKeysWithTheirDefaults) {
    const auto& chord = hotkeyPresets()[2];
    EXPECT_EQ(chord.keys, (QStringList{"⌃", "⌥", "Space"}));
    EXPECT_STREQ(chord.settingsLabel.key, "settings.hotkey.preset.default");
    EXPECT_STREQ(chord.settingsLabel.defaultText, "Control + Option + Space");
    EXPECT_STREQ(chord.onboardingLabel.key, "onboarding.hotkey.preset.default.label");
    EXPECT_STREQ(chord.onboardingDescription.key, "onboarding.hotkey.preset.default.desc");
    EXPECT_STREQ(chord.onboardingDescription.defaultText, "Classic chord. Press and hold.");
}

} // namespace
