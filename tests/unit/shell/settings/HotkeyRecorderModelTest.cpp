// SPDX-License-Identifier: MIT
#include "shell/settings/HotkeyRecorderModel.h"

#include "FakeEventTap.h"
#include "FakeKeyboardLayout.h"
#include "InMemoryPreferenceStore.h"
#include "ObservedFakes.h"
#include "PrintQt.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "linux/keyboard/XkbWindowKeys.h"
#include "persistence/AppSettings.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace talvera;
using namespace talvera::test;
using Special = HotkeyBinding::SpecialKey;
using Shortcut = HotkeyRecorderModel::Shortcut;

namespace {

constexpr std::uint32_t shift = 1;
constexpr std::uint32_t control = 4;
constexpr std::uint32_t alt = 8;

class RecorderModel : public testing::Test {
protected:
    RecorderModel() {
        sounds.onPlay = [this](const QString&) { ++beeps; };
        hotkey.setBinding(settings.hotkeyBinding.get());
        hotkey.install();
        toggle.setBinding(settings.translateToggleBinding.get());
        toggle.install();
    }

    /// A key goes down in the field; true when the field takes it.
    bool press(std::uint32_t evdevCode, std::uint32_t modifiers = 0, std::uint32_t symbol = 0) {
        return model.press(evdevCode + 8, symbol, modifiers, false);
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
    HotkeyManager hotkey{actor, keyboard, console};
    TranslateToggleHotkey toggle{actor, keyboard, console};
    HotkeyRecorderModel::Parts parts{settings, sounds, layout, keys, suspendHotkey, hotkey, toggle};
    HotkeyRecorderModel model{parts, Shortcut::Hotkey};
    HotkeyRecorderModel toggleModel{parts, Shortcut::TranslateToggle};
    int beeps = 0;
};

TEST_F(RecorderModel, atRest_invitesAndShowsWhatIsSet) {
    EXPECT_EQ(model.prompt(), "Click to record");
    EXPECT_EQ(model.shortcut(), "Right ⌘ hold");
    EXPECT_EQ(model.keyCaps(), QStringList{"Right ⌘"});
    EXPECT_EQ(toggleModel.shortcut(), "⌃⌥⌘T");
    EXPECT_EQ(toggleModel.keyCaps(), (QStringList{"⌃", "⌥", "⌘", "T"}));
    EXPECT_FALSE(press(KEY_A, control));
}

TEST_F(RecorderModel, click_listensAndSuspendsTheHotkeys) {
    int keyboardWanted = 0;
    QObject::connect(&model, &HotkeyRecorderModel::keyboardWanted, [&] { ++keyboardWanted; });
    model.record();
    EXPECT_TRUE(model.isArmed());
    EXPECT_TRUE(model.isRecording());
    EXPECT_TRUE(suspendHotkey.get());
    EXPECT_EQ(model.prompt(), "Press a shortcut…");
    EXPECT_GT(keyboardWanted, 0);
}

TEST_F(RecorderModel, chord_isAssignedAndTheHotkeysActAgain) {
    model.record();
    EXPECT_TRUE(press(KEY_LEFTCTRL));
    EXPECT_TRUE(press(KEY_LEFTALT, control));
    EXPECT_TRUE(press(KEY_K, control | alt));
    EXPECT_EQ(settings.hotkeyBinding.get(), HotkeyBinding::chord(0xC0000, VirtualKey::K));
    EXPECT_EQ(model.shortcut(), "⌃⌥K");
    EXPECT_FALSE(model.isArmed());
    EXPECT_FALSE(model.isRecording());
    EXPECT_FALSE(suspendHotkey.get());
    EXPECT_EQ(settings.translateToggleBinding.get(), HotkeyBinding::chord(0x1C0000, VirtualKey::T));
}

TEST_F(RecorderModel, keysAlone_areAssigned) {
    for (const auto& [code, symbol, key] :
         {std::tuple(KEY_RIGHTCTRL, XKB_KEY_Control_R, Special::RightCommand),
          std::tuple(KEY_RIGHTMETA, XKB_KEY_Super_R, Special::RightCommand),
          std::tuple(KEY_RIGHTALT, XKB_KEY_Alt_R, Special::RightOption),
          std::tuple(KEY_RIGHTALT, XKB_KEY_ISO_Level3_Shift, Special::RightOption),
          std::tuple(KEY_CAPSLOCK, XKB_KEY_Caps_Lock, Special::CapsLock)}) {
        settings.hotkeyBinding.set(HotkeyBinding());
        model.record();
        press(code, 0, symbol);
        EXPECT_EQ(settings.hotkeyBinding.get(), HotkeyBinding::holdSpecial(key)) << code;
        EXPECT_FALSE(model.isRecording());
    }
}

TEST_F(RecorderModel, letterAlone_beepsThroughTheSoundServerAndListensOn) {
    model.record();
    EXPECT_TRUE(press(KEY_A));
    EXPECT_EQ(beeps, 1);
    EXPECT_TRUE(model.isArmed());
    EXPECT_TRUE(suspendHotkey.get());
}

TEST_F(RecorderModel, escape_endsTheRecordingAndKeepsWhatIsSet) {
    const auto before = settings.hotkeyBinding.get();
    model.record();
    EXPECT_TRUE(press(KEY_ESC));
    EXPECT_FALSE(model.isArmed());
    EXPECT_FALSE(model.isRecording());
    EXPECT_FALSE(suspendHotkey.get());
    EXPECT_EQ(settings.hotkeyBinding.get(), before);
    EXPECT_EQ(beeps, 0);
}

TEST_F(RecorderModel, keyThatNoBindingCanName_isTakenAndDoesNothing) {
    model.record();
    EXPECT_TRUE(press(KEY_WWW, control));
    EXPECT_TRUE(model.isArmed());
    EXPECT_EQ(beeps, 0);
}

TEST_F(RecorderModel, cancel_endsTheRecording) {
    model.record();
    model.cancel();
    EXPECT_FALSE(model.isArmed());
    EXPECT_FALSE(suspendHotkey.get());
    model.cancel(); // and again does nothing
    EXPECT_FALSE(model.isArmed());
}

TEST_F(RecorderModel, modelThatGoes_leavesNoHotkeySuspended) {
    {
        HotkeyRecorderModel passing(parts, Shortcut::Hotkey);
        passing.record();
        EXPECT_TRUE(suspendHotkey.get());
    }
    EXPECT_FALSE(suspendHotkey.get());
}

TEST_F(RecorderModel, recordingOfTheOtherShortcut_endsThisOneAndTheHotkeyStaysSuspended) {
    model.record();
    toggleModel.record();
    EXPECT_FALSE(model.isArmed());
    EXPECT_FALSE(model.isRecording());
    EXPECT_TRUE(toggleModel.isArmed());
    EXPECT_TRUE(suspendHotkey.get());
    model.cancel(); // its field has lost the keyboard by now
    EXPECT_TRUE(toggleModel.isArmed());
    EXPECT_TRUE(suspendHotkey.get());
    toggleModel.press(KEY_K + 8, 0, control, false);
    EXPECT_FALSE(suspendHotkey.get());
}

TEST_F(RecorderModel, twoFieldsOfOneShortcut_recordOneAtATime) {
    HotkeyRecorderModel second(parts, Shortcut::Hotkey);
    model.record();
    second.record();
    EXPECT_FALSE(model.isRecording());
    second.press(KEY_K + 8, 0, control, false);
    EXPECT_EQ(model.shortcut(), "⌃K");
    EXPECT_EQ(second.shortcut(), "⌃K");
    EXPECT_FALSE(suspendHotkey.get());
}

TEST_F(RecorderModel, flagClearedByTheHost_endsTheRecording) {
    model.record();
    suspendHotkey.set(false);
    EXPECT_FALSE(model.isArmed());
    EXPECT_FALSE(model.isRecording());
    model.record();
    EXPECT_TRUE(suspendHotkey.get());
}

TEST_F(RecorderModel, boundChordStruckWhileRecording_isSaidAndTheFieldListensOn) {
    int changes = 0;
    QObject::connect(&model, &HotkeyRecorderModel::boundChordChanged, [&] { ++changes; });
    const auto chord = HotkeyBinding();
    settings.hotkeyBinding.set(chord);
    hotkey.setBinding(chord);
    const auto strike = [this](VirtualKey key) {
        keyboard.tap(key);
        actor.settle();
    };
    for (const auto key : {VirtualKey::Control, VirtualKey::Option})
        keyboard.press(key);
    strike(VirtualKey::Space);
    EXPECT_EQ(model.boundChord(), ""); // nothing is recorded

    model.record();
    strike(VirtualKey::Space);
    EXPECT_EQ(model.boundChord(), "⌃⌥Space is set already — press another one");
    EXPECT_TRUE(model.isArmed());
    keyboard.press(VirtualKey::Command);
    strike(VirtualKey::T);
    EXPECT_EQ(model.boundChord(), "⌃⌥⌘T switches translation — press another one");
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(toggleModel.boundChord(), "");
    model.cancel();
    EXPECT_EQ(model.boundChord(), "");

    toggleModel.record();
    strike(VirtualKey::T);
    EXPECT_EQ(toggleModel.boundChord(), "⌃⌥⌘T is set already — press another one");
    strike(VirtualKey::Space);
    EXPECT_EQ(toggleModel.boundChord(), "⌃⌥Space is your hotkey — press another one");
    EXPECT_EQ(settings.hotkeyBinding.get(), chord);
}

TEST_F(RecorderModel, layoutSwitchedWhileRecording_changesNothing) {
    constexpr std::uint32_t secondGroup = 1U << 13U;
    model.record();
    press(KEY_LEFTCTRL);
    press(KEY_K, control | secondGroup, XKB_KEY_Cyrillic_el);
    EXPECT_EQ(settings.hotkeyBinding.get(), HotkeyBinding::chord(0x40000, VirtualKey::K));
}

TEST_F(RecorderModel, capsLockThatTheLayoutMadeEscape_endsTheRecording) {
    model.record();
    EXPECT_TRUE(press(KEY_CAPSLOCK, 0, XKB_KEY_Escape));
    EXPECT_FALSE(model.isRecording());
    EXPECT_EQ(beeps, 0);
}

TEST_F(RecorderModel, capsLockThatTheLayoutMadeControl_isNoKeyToHold) {
    model.record();
    press(KEY_CAPSLOCK, 0, XKB_KEY_Control_L); // ctrl:nocaps
    EXPECT_TRUE(model.isArmed());
    press(KEY_K, control);
    EXPECT_EQ(settings.hotkeyBinding.get(), HotkeyBinding::chord(0x40000, VirtualKey::K));
}

TEST_F(RecorderModel, toggle_isAssignedAndCleared) {
    toggleModel.record();
    toggleModel.press(KEY_K + 8, 0, control | shift, false);
    EXPECT_EQ(settings.translateToggleBinding.get(), HotkeyBinding::chord(0x60000, VirtualKey::K));
    toggleModel.record();
    toggleModel.clear();
    EXPECT_FALSE(toggleModel.isRecording());
    EXPECT_EQ(settings.translateToggleBinding.get(), std::nullopt);
    EXPECT_EQ(toggleModel.shortcut(), "");
    EXPECT_TRUE(toggleModel.keyCaps().isEmpty());
    EXPECT_EQ(toggleModel.refusal(), "");
}

TEST_F(RecorderModel, chordOfAnotherProgram_isSaidUntilItActs) {
    int changes = 0;
    QObject::connect(&model, &HotkeyRecorderModel::refusalChanged, [&] { ++changes; });
    EXPECT_EQ(model.refusal(), "");
    const auto chord = HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K);
    keyboard.takenChords.push_back({KeyFlag::Control, VirtualKey::K});
    settings.hotkeyBinding.set(chord);
    hotkey.setBinding(chord);
    EXPECT_EQ(model.refusal(), "Another program uses ⌃K — choose another one");
    EXPECT_GT(changes, 0);
    changes = 0;
    keyboard.press(VirtualKey::Control); // the other program has ended
    keyboard.tap(VirtualKey::K);
    EXPECT_EQ(model.refusal(), "");
    EXPECT_GT(changes, 0);
}

TEST_F(RecorderModel, keyThatNoKeyboardHas_isSaid) {
    const auto chord = HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K);
    keyboard.missingKeys.insert(VirtualKey::K);
    settings.translateToggleBinding.set(chord);
    toggle.setBinding(chord);
    EXPECT_EQ(toggleModel.refusal(), "No keyboard here has ⌃K — choose another one");
}

TEST_F(RecorderModel, keyAloneWhereChordsAloneAreTold_isSaidToDoNothing) {
    keyboard.tellsChordsOnly = true;
    hotkey.setBinding(HotkeyBinding());
    hotkey.setBinding(HotkeyBinding::holdSpecial(Special::RightCommand));
    EXPECT_EQ(model.refusal(), "A key alone can't do this — choose several, such as ⌃⌥T");
}

TEST_F(RecorderModel, specialKeyForTheToggle_isSaidToDoNothing) {
    settings.translateToggleBinding.set(HotkeyBinding::holdSpecial(Special::RightCommand));
    EXPECT_EQ(toggleModel.refusal(), "A key alone can't do this — choose several, such as ⌃⌥T");
    EXPECT_EQ(model.refusal(), "");
}

} // namespace
