// SPDX-License-Identifier: MIT
#include "shell/settings/SettingsRows.h"
#include "InMemoryPreferenceStore.h"
#include "PrintQt.h"
#include "persistence/AppSettings.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace talvera;

namespace {

class SettingsRowsTest : public testing::Test {
protected:
    template <typename Row>
    void count(Row& row) {
        QObject::connect(&row, &SettingsRow::changed, [this] { ++told; });
    }

    test::InMemoryPreferenceStore store;
    AppSettings settings{store};
    int told = 0;
};

TEST_F(SettingsRowsTest, switch_isTheSetting) {
    SwitchRow row({"Icon", "In the panel"}, bound(settings.showMenuBarIcon));
    count(row);
    EXPECT_EQ(row.title(), "Icon");
    EXPECT_EQ(row.subtitle(), "In the panel");
    EXPECT_TRUE(row.isOn());
    row.set(false);
    EXPECT_FALSE(settings.showMenuBarIcon.get());
    EXPECT_FALSE(row.isOn());
    EXPECT_EQ(told, 1);
    settings.showMenuBarIcon.set(true);
    EXPECT_TRUE(row.isOn());
    EXPECT_EQ(told, 2);
}

TEST_F(SettingsRowsTest, switchOfTwoCases_isOneOfThem) {
    SwitchRow row({},
                  boundToSwitch(settings.insertionMode, InsertionMode::AutoByDuration, InsertionMode::Paste));
    EXPECT_TRUE(row.isOn());
    row.set(false);
    EXPECT_EQ(settings.insertionMode.get(), InsertionMode::Paste);
    row.set(true);
    EXPECT_EQ(settings.insertionMode.get(), InsertionMode::AutoByDuration);
}

TEST_F(SettingsRowsTest, rowThatCantBeUsed_saysWhyAndChangesNothing) {
    bool usable = false;
    SwitchRow row({"Tap", "How it works"}, bound(settings.hotkeyTapToToggle));
    row.enableWhile([&] { return usable; }, "Why not");
    EXPECT_FALSE(row.isEnabled());
    EXPECT_EQ(row.subtitle(), "Why not");
    row.set(true);
    EXPECT_FALSE(settings.hotkeyTapToToggle.get());
    usable = true;
    EXPECT_EQ(row.subtitle(), "How it works");
    row.set(true);
    EXPECT_TRUE(settings.hotkeyTapToToggle.get());
}

TEST_F(SettingsRowsTest, followedSetting_isToldOf) {
    SwitchRow row({}, bound(settings.hotkeyTapToToggle));
    row.follow(settings.startSoundName);
    count(row);
    settings.startSoundName.set("Ping");
    EXPECT_EQ(told, 1);
}

TEST_F(SettingsRowsTest, choice_goesByTheNamesOfTheCases) {
    ChoiceRow row({}, {{"off", "Off"}, {"casual", "Relaxed"}, {"unheard", "Unheard of"}},
                  bound(settings.cleanupTone));
    count(row);
    EXPECT_EQ(row.options(), QStringList({"Off", "Relaxed", "Unheard of"}));
    EXPECT_EQ(row.current(), -1); // conversational
    EXPECT_EQ(row.currentText(), "");
    row.choose(1);
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Casual);
    EXPECT_EQ(row.current(), 1);
    EXPECT_EQ(row.currentText(), "Relaxed");
    row.choose(2);
    row.choose(3);
    row.choose(-1);
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Casual);
    EXPECT_EQ(told, 1);
}

TEST_F(SettingsRowsTest, choicesThatChange_areToldAndKeepWhatIsChosen) {
    ChoiceRow row({}, {{"off", "Off"}, {"casual", "Relaxed"}}, bound(settings.cleanupTone));
    row.choose(1);
    count(row);
    row.setChoices({{"casual", "Easy"}});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(row.options(), QStringList{"Easy"});
    EXPECT_EQ(row.currentText(), "Easy");
    row.choose(1);
    EXPECT_EQ(settings.cleanupTone.get(), CleanupTone::Casual);
    row.setChoices({{"off", "Off"}});
    EXPECT_EQ(row.current(), -1);
}

TEST_F(SettingsRowsTest, slider_keepsToItsRangeAndSteps) {
    SliderRow row({}, {.from = 1, .to = 60, .step = 1}, bound(settings.typewriterThresholdSeconds),
                  [](double value) { return QString::number(value) + " s"; });
    EXPECT_EQ(row.valueText(), "15 s");
    for (const auto& [moved, assigned] : std::initializer_list<std::pair<double, double>>{
             {20, 20}, {20.4, 20}, {20.6, 21}, {0, 1}, {-5, 1}, {1000, 60}}) {
        row.setValue(moved);
        EXPECT_EQ(settings.typewriterThresholdSeconds.get(), assigned) << moved;
    }
    row.setValue(std::nan(""));
    row.setValue(std::numeric_limits<double>::infinity());
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 60);
}

TEST_F(SettingsRowsTest, storedNumberBesideTheRange_staysUntilItIsMoved) {
    settings.typewriterThresholdSeconds.set(90);
    const SliderRow row({}, {.from = 1, .to = 60, .step = 1}, bound(settings.typewriterThresholdSeconds),
                        [](double) { return QString(); });
    EXPECT_EQ(row.value(), 90);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 90);
}

TEST_F(SettingsRowsTest, rowThatIsGone_hearsNothing) {
    { const SwitchRow row({}, bound(settings.showMenuBarIcon)); }
    settings.showMenuBarIcon.set(false);
}

} // namespace
