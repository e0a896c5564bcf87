// SPDX-License-Identifier: MIT
// What the settings' view makes of its model, without a screen.
#include "SettingsViews.h"
#include "ShippedCatalogs.h"

#include <QAccessible>
#include <QScopeGuard>

using namespace talvera;
using namespace talvera::test;

namespace {

TEST_F(SettingsViews, everyStateInEnglish_isShownWhole) {
    expectWholeTextsEverywhere(usualSize);
    expectWholeTextsEverywhere({560, 360});
}

class TranslatedSettings : public SettingsViews, public testing::WithParamInterface<std::string> {
protected:
    SpokenLanguage spokenLanguage{QString::fromStdString(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(Each, TranslatedSettings, testing::ValuesIn(shippedTranslations()), languageOfTest);

TEST_P(TranslatedSettings, everyState_isShownWhole) {
    expectWholeTextsEverywhere(usualSize);
    expectWholeTextsEverywhere({560, 360});
}

TEST_P(TranslatedSettings, cards_beginAndEndOnWholePixelsAtEveryScale) {
    for (const int width : {840, 960, 1600}) {
        make({width, 640});
        for (const auto* card : shownOfType("SettingsCard")) {
            EXPECT_EQ(std::fmod(placeOf(*card).left(), 4), 0) << width;
            EXPECT_EQ(std::fmod(placeOf(*card).width(), 4), 0) << width;
        }
    }
}

TEST_F(SettingsViews, sidebar_goesByArrowKeysAndShortcuts) {
    show();
    EXPECT_EQ(focused(), "General");
    press(Qt::Key_Down);
    EXPECT_EQ(model->section(), "hotkey");
    EXPECT_EQ(focused(), "Hotkey");
    press(Qt::Key_PageDown, Qt::ControlModifier);
    EXPECT_EQ(model->section(), "language");
    press(Qt::Key_PageUp, Qt::ControlModifier);
    press(Qt::Key_Up);
    press(Qt::Key_Up); // there is none above
    EXPECT_EQ(model->section(), "general");
    for (int i = 0; i < 7; ++i)
        press(Qt::Key_Down);
    EXPECT_TRUE(model->showsAbout());
}

TEST_F(SettingsViews, sidebar_goesByTheMouse) {
    show();
    click(control("Privacy"));
    EXPECT_EQ(model->section(), "privacy");
    EXPECT_TRUE(isShown("No analytics, no accounts required."));
}

TEST_F(SettingsViews, tab_reachesEverythingOfASection) {
    show();
    EXPECT_EQ(tabbed(),
              QStringList({"General", "Hotkey", "Language", "AI cleanup", "Privacy", "About Talvera",
                           "Display language", "Launch at login", "Show in menu bar", "Sound on start",
                           "Typewriter on short recordings", "Type recordings up to", "Protect focus target",
                           "When another app is in front"}));
    settings.targetLanguageCode.set("de");
    model->select("language");
    layOut(*view);
    EXPECT_EQ(tabbed().sliced(4, 5), // behind the sidebar, from this section on
              QStringList({"Source language", "Translate", "Translate to", "Translate shortcut", "Clear"}));
    model->select("hotkey");
    layOut(*view);
    EXPECT_EQ(tabbed().size(), 6 + 1 + 5 + 1);
}

TEST_F(SettingsViews, languageModel_isChosenAndAddedByTheKeyboardToo) {
    readiness.aiState.set(AIAvailabilityState::Available);
    show();
    model->select("ai");
    layOut(*view);
    EXPECT_EQ(languageModelChoice.looks, 1);
    EXPECT_EQ(tabbed().sliced(1, 3), QStringList({"Privacy", "About Talvera", "Tone"}));
    EXPECT_EQ(tabbed().size(), 7) << "there is no model";
    setModels({{"a.gguf", "Alpha"}, {"b.gguf", "Beta"}});
    layOut(*view);
    EXPECT_TRUE(isShown("None"));
    click(control("Language model"));
    for (const auto key : {Qt::Key_End, Qt::Key_Return})
        press(key);
    EXPECT_EQ(languageModelChoice.choice, "b.gguf");
    EXPECT_TRUE(isShown("Beta"));
    EXPECT_EQ(focused(), "Language model");
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Open folder");
    press(Qt::Key_Return);
    EXPECT_EQ(done, QStringList{"model"});
}

TEST_F(SettingsViews, nameOfALanguageModelThatIsTooLong_staysInTheWindow) {
    make({560, 360});
    model->select("ai");
    setModels({{"a.gguf", QString(200, 'M')}});
    layOut(*view);
    const auto place = placeOf(control("Language model"));
    EXPECT_GE(place.left(), 0);
    EXPECT_LE(place.right(), 560);
}

TEST_F(SettingsViews, sectionThatGoesWithTheKeyboard_leavesItToTheSidebar) {
    show();
    control("Show in menu bar").forceActiveFocus();
    model->select("privacy");
    layOut(*view);
    EXPECT_EQ(focused(), "Privacy");
}

TEST_F(SettingsViews, sectionThatIsAskedForFromElsewhere_hasTheKeyboardInTheSidebar) {
    show();
    ASSERT_EQ(focused(), "General");
    model->select("language");
    layOut(*view);
    EXPECT_EQ(focused(), "Language");
}

TEST_F(SettingsViews, clearedShortcut_leavesTheKeyboardAtItsField) {
    show();
    model->select("language");
    layOut(*view);
    control("Clear").forceActiveFocus();
    press(Qt::Key_Space);
    EXPECT_FALSE(settings.translateToggleBinding.get());
    EXPECT_EQ(focused(), "Translate shortcut");
}

TEST_F(SettingsViews, buttonThatCantBeUsed_isFainterThanOthers) {
    show();
    model->select("language");
    layOut(*view);
    auto& clear = control("Clear");
    EXPECT_EQ(clear.opacity(), 1);
    click(clear);
    EXPECT_LT(clear.opacity(), 1);
}

TEST_F(SettingsViews, ownHotkey_isShownByItsKeysInItsRow) {
    show();
    model->select("hotkey");
    const auto shownCaps = [&] { return shownOfType("KbdCap").size(); };
    const auto ofPresets = shownCaps() - model->hotkey()->currentKeys().size();
    settings.hotkeyBinding.set(HotkeyBinding::chord(0x1C0000, VirtualKey::T));
    EXPECT_EQ(shownCaps(), ofPresets + 2 * 4) << "in the field, and in the row";
}

TEST_F(SettingsViews, rowsOfALongList_haveLinesBetweenThem) {
    make();
    model->select("privacy");
    EXPECT_EQ(shownOfType("RowDivider").size(), model->privacyClaims().size() - 1);
    model->selectAbout();
    EXPECT_EQ(shownOfType("RowDivider").size(), 1 + model->about()->thirdParties()->parties().size());
}

TEST_F(SettingsViews, switch_isFlippedByMouseAndKeyboard) {
    show();
    auto& icon = control("Show in menu bar");
    click(icon);
    EXPECT_FALSE(settings.showMenuBarIcon.get());
    press(Qt::Key_Space);
    EXPECT_TRUE(settings.showMenuBarIcon.get());
    press(Qt::Key_Return);
    EXPECT_FALSE(settings.showMenuBarIcon.get());
}

TEST_F(SettingsViews, switchThatCantBeFlipped_showsWhatIsSo) {
    show();
    loginItem.fails = true;
    auto& login = control("Launch at login");
    click(login);
    EXPECT_TRUE(isShown(model->general()->launchAtLogin()->problem()));
    EXPECT_NE(model->general()->launchAtLogin()->problem(), "");
    loginItem.fails = false;
    click(login);
    EXPECT_TRUE(loginItem.registered);
}

TEST_F(SettingsViews, disabledSwitch_takesNoClick) {
    settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(Special::Fn));
    show();
    model->select("hotkey");
    layOut(*view);
    click(control("Tap to toggle"));
    EXPECT_FALSE(settings.hotkeyTapToToggle.get());
    EXPECT_TRUE(isShown(model->hotkey()->fnWarning()));
}

TEST_F(SettingsViews, list_isChosenFromByKeyboard) {
    show();
    control("Sound on start").forceActiveFocus();
    press(Qt::Key_Space);
    EXPECT_TRUE(isShown("Basso"));
    press(Qt::Key_Home);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(settings.startSoundName.get(), "Basso");
    EXPECT_EQ(played, QStringList{"Basso while Basso is set"});
    EXPECT_FALSE(isShown("Blow"));
    EXPECT_EQ(focused(), "Sound on start");
    press(Qt::Key_Down);
    press(Qt::Key_P); // the first of three
    press(Qt::Key_O);
    press(Qt::Key_Return);
    EXPECT_EQ(settings.startSoundName.get(), "Pop");
}

TEST_F(SettingsViews, list_isChosenFromByMouseAndClosedByAClickBesideIt) {
    show();
    click(control("Display language"));
    const auto rows =
        shownItems([](QQuickItem& item) { return item.property("modelData").toString() == "Français"; });
    ASSERT_FALSE(rows.empty());
    click(*rows.front());
    EXPECT_EQ(settings.appLanguage.get(), "fr");
    EXPECT_TRUE(isShown("Talvera speaks the new language after a restart."));
    click(control("Restart now"));
    EXPECT_EQ(done, QStringList{"relaunch"});
    click(control("Display language"));
    EXPECT_TRUE(isShown("日本語"));
    QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(5, 600));
    EXPECT_FALSE(isShown("日本語"));
    EXPECT_EQ(settings.appLanguage.get(), "fr");
}

TEST_F(SettingsViews, list_opensWhenTheSpaceBarIsLetGo) {
    show();
    control("Sound on start").forceActiveFocus();
    QTest::keyPress(&window, Qt::Key_Space);
    EXPECT_FALSE(isShown("Basso"));
    QTest::keyRelease(&window, Qt::Key_Space);
    EXPECT_TRUE(isShown("Basso"));
}

TEST_F(SettingsViews, list_isAComboBoxToScreenReaders) {
    const auto nobodyListens = qScopeGuard([] { QAccessible::setActive(false); });
    QAccessible::setActive(true);
    show();
    auto* told = QAccessible::queryAccessibleInterface(&control("Sound on start"));
    ASSERT_TRUE(told);
    EXPECT_EQ(told->role(), QAccessible::ComboBox);
    EXPECT_EQ(told->text(QAccessible::Name), "Sound on start");
    EXPECT_EQ(told->text(QAccessible::Description), "Submarine");
    ASSERT_TRUE(told->actionInterface());
    told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(isShown("Basso"));
}

TEST_F(SettingsViews, slider_isMovedByTheKeyboard) {
    show();
    control("Type recordings up to").forceActiveFocus();
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 15);
    press(Qt::Key_Right);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 16);
    press(Qt::Key_PageUp);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 26);
    press(Qt::Key_End);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 60);
    press(Qt::Key_Home);
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 1);
    settings.typewriterThresholdSeconds.set(42);
    EXPECT_EQ(control("Type recordings up to").property("value").toDouble(), 42);
}

TEST_F(SettingsViews, storedNumberBesideTheSlider_isLeftAlone) {
    settings.typewriterThresholdSeconds.set(90);
    show();
    EXPECT_EQ(settings.typewriterThresholdSeconds.get(), 90);
    EXPECT_TRUE(isShown("90 seconds"));
}

TEST_F(SettingsViews, hotkey_isChosenAndRecorded) {
    show();
    model->select("hotkey");
    layOut(*view);
    click(control("Caps Lock hold"));
    EXPECT_EQ(settings.hotkeyBinding.get(), HotkeyBinding::holdSpecial(Special::CapsLock));
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    EXPECT_EQ(model->hotkey()->selectedId(), "default");
    click(control("Custom…"));
    EXPECT_TRUE(hotkeyRecorder.isRecording());
    pressEscapeKey(); // ends the recording, and closes no window
    EXPECT_FALSE(hotkeyRecorder.isRecording());
    EXPECT_TRUE(window.isVisible());
}

TEST_F(SettingsViews, escapeAndCtrlW_closeTheWindow) {
    show();
    press(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
    show();
    press(Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(SettingsViews, escapeInAList_closesOnlyTheList) {
    show();
    click(control("Sound on start"));
    EXPECT_TRUE(isShown("Basso"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(isShown("Basso"));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(settings.startSoundName.get(), "Submarine");
    press(Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(SettingsViews, whatHasTheKeyboard_isInSight) {
    show();
    window.resize(560, 360);
    view->setSize(QSizeF(560, 360));
    layOut(*view);
    for (const auto* name : {"When another app is in front", "Display language"}) {
        control(name).forceActiveFocus(Qt::TabFocusReason);
        const auto place = placeOf(control(name));
        EXPECT_GE(place.top(), 0) << name;
        EXPECT_LE(place.bottom(), 360) << name;
    }
}

} // namespace
