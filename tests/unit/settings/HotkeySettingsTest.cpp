// SPDX-License-Identifier: MIT
#include "shell/settings/HotkeySettings.h"
#include "SettingsFixture.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class HotkeySettingsTest : public SettingsFixture {
protected:
    HotkeySettings section{modelParts.hotkey};
};

TEST_F(HotkeySettingsTest, presets_areFourAndTheDefaultIsMarked) {
    QStringList ids;
    QStringList marked;
    for (const auto& preset : section.presets()) {
        const auto row = preset.value<HotkeyPresetRow>();
        EXPECT_NE(row.label, "");
        EXPECT_FALSE(row.keys.isEmpty());
        ids << row.id;
        if (!row.badge.isEmpty())
            marked << row.id;
    }
    EXPECT_EQ(ids, QStringList({"rcmd", "fn", "default", "caps"}));
    EXPECT_EQ(marked, QStringList{"rcmd"});
    EXPECT_EQ(section.selectedId(), "rcmd");
}

TEST_F(HotkeySettingsTest, chosenPreset_isAssigned) {
    section.choose("default");
    EXPECT_EQ(settings.hotkeyBinding.get(), HotkeyBinding());
    EXPECT_EQ(section.selectedId(), "default");
    EXPECT_EQ(section.currentKeys().size(), 3);
    section.choose("custom"); // is no preset
    EXPECT_EQ(section.selectedId(), "default");
}

TEST_F(HotkeySettingsTest, chosenPreset_endsARecording) {
    section.recordCustom();
    EXPECT_TRUE(hotkeyRecorder.isRecording());
    EXPECT_TRUE(suspendHotkey.get());
    section.choose("caps");
    EXPECT_FALSE(hotkeyRecorder.isRecording());
    EXPECT_FALSE(suspendHotkey.get());
}

TEST_F(HotkeySettingsTest, hotkeyOfTheUsersOwn_isNamed) {
    EXPECT_EQ(section.customText(), "Custom…");
    settings.hotkeyBinding.set(HotkeyBinding::chord(0x1C0000, VirtualKey::T));
    EXPECT_EQ(section.selectedId(), "custom");
    EXPECT_EQ(section.customText(), "Custom: " + section.currentText());
    EXPECT_NE(section.currentText(), "");
}

TEST_F(HotkeySettingsTest, fn_endsTapToToggleForGood) {
    section.tapToToggle()->set(true);
    EXPECT_TRUE(settings.hotkeyTapToToggle.get());
    section.choose("fn");
    EXPECT_FALSE(settings.hotkeyTapToToggle.get());
    EXPECT_FALSE(section.tapToToggle()->isEnabled());
    EXPECT_TRUE(section.tapToToggle()->subtitle().startsWith("Unavailable for Fn"));
    section.tapToToggle()->set(true);
    EXPECT_FALSE(settings.hotkeyTapToToggle.get());
    section.choose("rcmd");
    EXPECT_FALSE(settings.hotkeyTapToToggle.get());
    EXPECT_TRUE(section.tapToToggle()->isEnabled());
    EXPECT_TRUE(section.tapToToggle()->subtitle().startsWith("Off: hold"));
}

TEST_F(HotkeySettingsTest, fn_isWarnedOf) {
    int told = 0;
    QObject::connect(&section, &HotkeySettings::changed, [&] { ++told; });
    EXPECT_EQ(section.fnWarning(), "");
    settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(Special::Fn));
    EXPECT_NE(section.fnWarning(), "");
    EXPECT_EQ(told, 1);
    section.openKeyboardSettings();
    EXPECT_EQ(done, QStringList{"keyboard"});
}

} // namespace
