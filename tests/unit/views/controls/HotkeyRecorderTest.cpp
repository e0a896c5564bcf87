// SPDX-License-Identifier: MIT
// The field that records shortcuts, without a screen.
#include "FakeEventTap.h"
#include "FakeKeyboardLayout.h"
#include "InMemoryPreferenceStore.h"
#include "ObservedFakes.h"
#include "PrintQt.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "itemsBelow.h"
#include "linux/keyboard/XkbWindowKeys.h"
#include "persistence/AppSettings.h"
#include "platform/desktop/DesktopAppearance.h"
#include "shell/settings/HotkeyRecorderModel.h"
#include "views/ViewEngine.h"
#include "views/controls/RecorderItem.h"

#include <QAccessible>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>

using namespace talvera;
using namespace talvera::test;

namespace {

class RecorderField : public testing::Test {
protected:
    RecorderField() {
        toggle.setBinding(settings.translateToggleBinding.get());
        toggle.install();
        view = views.create("controls/HotkeyRecorder", {{"recorder", QVariant::fromValue(&model)},
                                                        {"label", "Translate shortcut"},
                                                        {"absent", "Not set"}});
        view->setParentItem(window.contentItem());
        view->setWidth(280);
        window.resize(280, 100);
        window.show();
        window.requestActivate();
    }

    void SetUp() override { ASSERT_TRUE(QTest::qWaitForWindowActive(&window)); }

    RecorderItem& field() {
        return *qobject_cast<RecorderItem*>(
            itemsBelow(*view, [](QQuickItem& item) { return item.inherits("talvera::RecorderItem"); }).at(0));
    }
    QStringList shownTexts() {
        QStringList texts;
        for (auto* item : itemsBelow(*view, [](QQuickItem& item) {
                 return item.inherits("QQuickText") && item.isVisible() &&
                        !item.property("text").toString().isEmpty();
             }))
            texts += item->property("text").toString();
        return texts;
    }
    QAccessibleInterface& accessible() { return *QAccessible::queryAccessibleInterface(&field()); }

    void click() { QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(140, 16)); }
    /// A key of the keyboard; false when the window was left with it.
    bool press(int evdevCode, Qt::Key key, quint32 modifiers = 0) {
        return send(QEvent::KeyPress, evdevCode, key, modifiers);
    }
    bool release(int evdevCode, Qt::Key key) { return send(QEvent::KeyRelease, evdevCode, key, 0); }
    bool send(QEvent::Type type, int evdevCode, Qt::Key key, quint32 modifiers) {
        QKeyEvent event(type, key, Qt::NoModifier, static_cast<quint32>(evdevCode + 8), 0, modifiers);
        QCoreApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }

    SimulatedMainActor actor;
    FakeKeyboard keyboard;
    RecordingConsole console;
    InMemoryPreferenceStore store;
    AppSettings settings{store};
    FakeSoundPlayer sounds;
    FakeKeyboardLayout layout{{{VirtualKey::T, "t"}, {VirtualKey::K, "k"}}};
    const XkbWindowKeys keys;
    Published<bool> suspendHotkey{false};
    TranslateToggleHotkey toggle{actor, keyboard, console};
    HotkeyManager hotkey{actor, keyboard, console};
    const HotkeyRecorderModel::Parts parts{settings, sounds, layout, keys, suspendHotkey, hotkey, toggle};
    HotkeyRecorderModel model{parts, HotkeyRecorderModel::Shortcut::TranslateToggle};
    DesktopAppearance appearance;
    ViewEngine views{appearance};
    QQuickWindow window;
    std::unique_ptr<QQuickItem> view;
};

TEST_F(RecorderField, atRest_showsTheKeysAndInvites) {
    EXPECT_EQ(shownTexts(), (QStringList{"⌃", "⌥", "⌘", "T", "Click to record"}));
    model.clear();
    EXPECT_EQ(shownTexts(), (QStringList{"Not set", "Click to record"}));
}

TEST_F(RecorderField, whatItSays_doesNotChangeItsWidth) {
    const auto fieldWidth = [&] {
        window.grabWindow(); // lays it out
        return view->property("fieldWidth").toDouble();
    };
    view->setProperty("invites", false);
    const auto width = fieldWidth();
    EXPECT_GT(width, 0);
    model.record();
    EXPECT_EQ(fieldWidth(), width) << "armed";
    model.clear();
    EXPECT_EQ(fieldWidth(), width) << "cleared";
    model.record();
    EXPECT_EQ(fieldWidth(), width) << "armed without a shortcut";
}

TEST_F(RecorderField, click_listens) {
    click();
    EXPECT_TRUE(model.isArmed());
    EXPECT_TRUE(field().hasActiveFocus());
    EXPECT_EQ(shownTexts(), QStringList{"Press a shortcut…"});
}

TEST_F(RecorderField, chord_isRecordedByItsPlace) {
    click();
    EXPECT_TRUE(press(KEY_LEFTCTRL, Qt::Key_Control));
    EXPECT_TRUE(press(KEY_K, Qt::Key_K, 4));
    EXPECT_EQ(settings.translateToggleBinding.get(), HotkeyBinding::chord(0x40000, VirtualKey::K));
    EXPECT_EQ(shownTexts(), (QStringList{"⌃", "K", "Click to record"}));
}

TEST_F(RecorderField, shortcutOfTheWindow_isRecordedAllTheSame) {
    click();
    QKeyEvent override(QEvent::ShortcutOverride, Qt::Key_Q, Qt::ControlModifier);
    override.ignore();
    QCoreApplication::sendEvent(&field(), &override);
    EXPECT_TRUE(override.isAccepted());
    model.cancel();
    override.ignore();
    QCoreApplication::sendEvent(&field(), &override);
    EXPECT_FALSE(override.isAccepted());
}

TEST_F(RecorderField, tabWhileArmed_staysInTheField) {
    click();
    press(KEY_TAB, Qt::Key_Tab);
    EXPECT_TRUE(field().hasActiveFocus());
    EXPECT_TRUE(model.isArmed());
}

TEST_F(RecorderField, spaceAndReturn_doWhatAClickDoesWhenTheyGoUp) {
    field().forceActiveFocus(Qt::TabFocusReason);
    EXPECT_TRUE(field().visualFocus());
    for (const auto& [code, key] :
         {std::pair(KEY_SPACE, Qt::Key_Space), std::pair(KEY_ENTER, Qt::Key_Return)}) {
        press(code, key);
        EXPECT_FALSE(model.isArmed());
        release(code, key);
        EXPECT_TRUE(model.isArmed());
        press(KEY_ESC, Qt::Key_Escape);
        EXPECT_FALSE(model.isArmed());
        EXPECT_TRUE(field().hasActiveFocus());
    }
}

// A server that sends no releases between the repeats of a held key marks none of them.
TEST_F(RecorderField, keysThatAreHeld_countOnce) {
    field().forceActiveFocus(Qt::TabFocusReason);
    press(KEY_SPACE, Qt::Key_Space);
    press(KEY_SPACE, Qt::Key_Space);
    release(KEY_SPACE, Qt::Key_Space);
    ASSERT_TRUE(model.isArmed());
    press(KEY_LEFTCTRL, Qt::Key_Control);
    press(KEY_SPACE, Qt::Key_Space, 4);
    ASSERT_EQ(settings.translateToggleBinding.get(), HotkeyBinding::chord(0x40000, VirtualKey::Space));
    press(KEY_SPACE, Qt::Key_Space, 4);
    release(KEY_SPACE, Qt::Key_Space);
    EXPECT_FALSE(model.isArmed());
}

TEST_F(RecorderField, otherKeysAtRest_areNotForIt) {
    field().forceActiveFocus();
    EXPECT_FALSE(press(KEY_K, Qt::Key_K, 4));
    EXPECT_FALSE(press(KEY_ESC, Qt::Key_Escape));
}

TEST_F(RecorderField, focusLost_endsTheRecording) {
    QQuickItem other(window.contentItem());
    click();
    other.forceActiveFocus();
    EXPECT_FALSE(model.isArmed());
    EXPECT_FALSE(suspendHotkey.get());
}

TEST_F(RecorderField, windowThatIsLeft_endsTheRecording) {
    click();
    QQuickWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(model.isArmed());
    EXPECT_FALSE(suspendHotkey.get());
}

TEST_F(RecorderField, twoFieldsInAWindow_recordOneAtATime) {
    HotkeyRecorderModel hotkeyModel{parts, HotkeyRecorderModel::Shortcut::Hotkey};
    const auto second =
        views.create("controls/HotkeyRecorder", {{"recorder", QVariant::fromValue(&hotkeyModel)}});
    second->setParentItem(window.contentItem());
    second->setPosition(QPointF(0, 50));
    second->setWidth(280);
    click();
    QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(140, 66));
    EXPECT_FALSE(model.isArmed());
    EXPECT_TRUE(hotkeyModel.isArmed());
    EXPECT_TRUE(suspendHotkey.get());
    press(KEY_RIGHTCTRL, Qt::Key_Control);
    EXPECT_EQ(settings.hotkeyBinding.get(),
              HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightCommand));
    EXPECT_FALSE(suspendHotkey.get());
}

TEST_F(RecorderField, inputMethod_isNotAskedForKeys) {
    click();
    EXPECT_FALSE(field().flags().testFlag(QQuickItem::ItemAcceptsInputMethod));
    QInputMethodQueryEvent query(Qt::ImEnabled);
    QCoreApplication::sendEvent(&field(), &query);
    EXPECT_FALSE(query.value(Qt::ImEnabled).toBool());
}

TEST_F(RecorderField, boundChordStruckWhileRecording_isSaidBelowAndToTheScreenReader) {
    click();
    for (const auto key : {VirtualKey::Control, VirtualKey::Option, VirtualKey::Command})
        keyboard.press(key);
    keyboard.tap(VirtualKey::T);
    const QString said = "⌃⌥⌘T is set already — press another one";
    EXPECT_EQ(shownTexts(), (QStringList{"Press a shortcut…", said}));
    EXPECT_EQ(accessible().text(QAccessible::Description), said);
    press(KEY_ESC, Qt::Key_Escape);
    EXPECT_FALSE(shownTexts().contains(said));
}

TEST_F(RecorderField, fieldThatIsHidden_endsTheRecording) {
    click();
    view->setVisible(false);
    EXPECT_FALSE(model.isRecording());
}

TEST_F(RecorderField, screenReader_isToldNameShortcutAndState) {
    EXPECT_EQ(accessible().role(), QAccessible::Button);
    EXPECT_EQ(accessible().text(QAccessible::Name), "Translate shortcut");
    EXPECT_EQ(accessible().text(QAccessible::Description), "⌃⌥⌘T");
    EXPECT_TRUE(accessible().state().focusable);
    EXPECT_FALSE(accessible().state().checked);
    accessible().actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(model.isArmed());
    EXPECT_EQ(accessible().text(QAccessible::Name), "Press a shortcut…");
    EXPECT_TRUE(accessible().state().checked);
    model.cancel();
    model.clear();
    EXPECT_EQ(accessible().text(QAccessible::Description), "Not set");
}

TEST_F(RecorderField, chordOfAnotherProgram_isSaidBelow) {
    keyboard.takenChords.push_back({KeyFlag::Control, VirtualKey::K});
    const auto chord = HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K);
    settings.translateToggleBinding.set(chord);
    toggle.setBinding(chord);
    EXPECT_TRUE(shownTexts().contains("Another program uses ⌃K — choose another one"));
}

} // namespace
