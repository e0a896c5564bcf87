// SPDX-License-Identifier: MIT
#include "hotkeys/HotkeyRecorder.h"

#include <gtest/gtest.h>

#include <vector>

using namespace talvera;
using Special = HotkeyBinding::SpecialKey;

namespace {

class Recorder : public testing::Test {
protected:
    Recorder() {
        recorder.onCapture = [this](const HotkeyBinding& binding) {
            EXPECT_FALSE(recorder.isRecording.get()) << "a capture ends the recording first";
            captured.push_back(binding);
        };
        recorder.view.onFirstResponder = [this] { ++focusRequests; };
    }

    void arm() {
        recorder.isRecording.set(true);
        recorder.update();
    }
    bool isArmed() const { return recorder.view.isArmed.get(); }

    /// Nothing has come of it, and the view goes on listening.
    void expectStillArmed(int beepsSoFar = 0) const {
        EXPECT_TRUE(isArmed());
        EXPECT_TRUE(recorder.isRecording.get());
        EXPECT_TRUE(captured.empty());
        EXPECT_EQ(beeps, beepsSoFar);
    }

    int beeps = 0;
    int focusRequests = 0;
    std::vector<HotkeyBinding> captured;
    HotkeyRecorder recorder{[this] { ++beeps; }};
    HotkeyRecorder::RecorderView& view = recorder.view;
};

TEST_F(Recorder, atTheStart_isNotArmed) {
    EXPECT_FALSE(isArmed());
    EXPECT_FALSE(recorder.isRecording.get());
}

TEST_F(Recorder, click_takesTheKeyboardAndArmsWithoutTouchingTheHost) {
    view.mouseDown();
    EXPECT_TRUE(isArmed());
    EXPECT_FALSE(recorder.isRecording.get());
    EXPECT_EQ(focusRequests, 1);
}

TEST_F(Recorder, hostThatRecords_armsTheViewAndGivesItTheKeyboard) {
    arm();
    EXPECT_TRUE(isArmed());
    EXPECT_EQ(focusRequests, 1);
}

TEST_F(Recorder, hostThatDoesNotRecord_disarmsAtItsNextUpdate) {
    view.mouseDown();
    recorder.update();
    EXPECT_FALSE(isArmed());
    EXPECT_EQ(focusRequests, 1);
}

TEST_F(Recorder, notArmed_handsKeysBack) {
    EXPECT_FALSE(view.keyDown(VirtualKey::A, KeyFlag::Command));
    EXPECT_FALSE(view.flagsChanged(VirtualKey::RightCommand, KeyFlag::Command));
    EXPECT_TRUE(captured.empty());
    EXPECT_EQ(beeps, 0);
}

TEST_F(Recorder, commandA_isCapturedAndEndsTheRecording) {
    arm();
    EXPECT_TRUE(view.keyDown(VirtualKey::A, KeyFlag::Command));
    EXPECT_EQ(captured, std::vector{HotkeyBinding::chord(0x100000, VirtualKey::A)});
    EXPECT_FALSE(recorder.isRecording.get());
    EXPECT_TRUE(isArmed()) << "that is for the host to change";
    recorder.update();
    EXPECT_FALSE(isArmed());
}

TEST_F(Recorder, letterWithoutAModifier_beepsAndStaysArmed) {
    arm();
    EXPECT_TRUE(view.keyDown(VirtualKey::A, 0));
    expectStillArmed(1);
    view.keyDown(VirtualKey::A, 0); // its repeat is another stroke
    expectStillArmed(2);
}

TEST_F(Recorder, controlEscape_isAChord) {
    arm();
    view.keyDown(VirtualKey::Escape, KeyFlag::Control);
    EXPECT_EQ(captured, std::vector{HotkeyBinding::chord(0x40000, VirtualKey::Escape)});
}

TEST_F(Recorder, escape_disarmsAndCapturesNothing) {
    arm();
    EXPECT_TRUE(view.keyDown(VirtualKey::Escape, 0));
    EXPECT_FALSE(isArmed());
    EXPECT_TRUE(captured.empty());
    EXPECT_EQ(beeps, 0);
    EXPECT_TRUE(recorder.isRecording.get()) << "that is for the host to change";
}

TEST_F(Recorder, escapeWithBitsThatTellTwinsApart_disarms) {
    arm();
    view.keyDown(VirtualKey::Escape, 0x100);
    EXPECT_FALSE(isArmed());
}

TEST_F(Recorder, escapeWithCapsLock_isAKeyWithoutAModifier) {
    arm();
    view.keyDown(VirtualKey::Escape, KeyFlag::CapsLock);
    expectStillArmed(1);
}

TEST_F(Recorder, shiftAlone_isModifierEnough) {
    arm();
    view.keyDown(VirtualKey::F5, KeyFlag::Shift);
    EXPECT_EQ(captured, std::vector{HotkeyBinding::chord(0x20000, VirtualKey::F5)});
}

TEST_F(Recorder, otherFlags_areDropped) {
    arm();
    view.keyDown(VirtualKey::K, 0x100 | KeyFlag::CapsLock | KeyFlag::Fn | KeyFlag::Control | KeyFlag::Option |
                                    KeyFlag::Shift | KeyFlag::Command);
    EXPECT_EQ(captured, std::vector{HotkeyBinding::chord(0x1E0000, VirtualKey::K)});
}

TEST_F(Recorder, fn_isNeverCaptured) {
    arm();
    EXPECT_TRUE(view.flagsChanged(VirtualKey::Fn, KeyFlag::Fn));
    view.flagsChanged(VirtualKey::Fn, 0);
    expectStillArmed();
}

TEST_F(Recorder, rightCommand_isCapturedAlone) {
    arm();
    EXPECT_TRUE(view.flagsChanged(VirtualKey::RightCommand, KeyFlag::Command | 0x10));
    EXPECT_EQ(captured, std::vector{HotkeyBinding::holdSpecial(Special::RightCommand)});
}

TEST_F(Recorder, rightCommandWithLeftCommandDown_isCaptured) {
    arm();
    view.flagsChanged(VirtualKey::Command, KeyFlag::Command);
    expectStillArmed();
    view.flagsChanged(VirtualKey::RightCommand, KeyFlag::Command);
    EXPECT_EQ(captured, std::vector{HotkeyBinding::holdSpecial(Special::RightCommand)});
}

TEST_F(Recorder, rightCommandAndShift_captureNothing) {
    arm();
    view.flagsChanged(VirtualKey::Shift, KeyFlag::Shift);
    view.flagsChanged(VirtualKey::RightCommand, KeyFlag::Shift | KeyFlag::Command);
    view.flagsChanged(VirtualKey::Shift, KeyFlag::Command);
    view.flagsChanged(VirtualKey::RightCommand, 0);
    expectStillArmed();
}

TEST_F(Recorder, rightOption_isCapturedAlone) {
    arm();
    view.flagsChanged(VirtualKey::RightOption, KeyFlag::Option);
    EXPECT_EQ(captured, std::vector{HotkeyBinding::holdSpecial(Special::RightOption)});
}

TEST_F(Recorder, leftCommandAndLeftOption_captureNothing) {
    arm();
    view.flagsChanged(VirtualKey::Command, KeyFlag::Command);
    view.flagsChanged(VirtualKey::Command, 0);
    view.flagsChanged(VirtualKey::Option, KeyFlag::Option);
    expectStillArmed();
}

TEST_F(Recorder, capsLock_isCapturedWhenItGoesOn) {
    arm();
    view.flagsChanged(VirtualKey::CapsLock, 0);
    expectStillArmed();
    view.flagsChanged(VirtualKey::CapsLock, KeyFlag::CapsLock);
    EXPECT_EQ(captured, std::vector{HotkeyBinding::holdSpecial(Special::CapsLock)});
}

TEST_F(Recorder, rightCommandWithCapsLockOn_capturesNothing) {
    arm();
    view.flagsChanged(VirtualKey::RightCommand, KeyFlag::Command | KeyFlag::CapsLock);
    expectStillArmed();
}

TEST_F(Recorder, keyLetGo_capturesNothing) {
    arm();
    view.flagsChanged(VirtualKey::RightCommand, 0);
    view.flagsChanged(VirtualKey::RightOption, 0);
    expectStillArmed();
}

TEST_F(Recorder, captureNobodyWaitsFor_isHarmless) {
    recorder.onCapture = nullptr;
    arm();
    view.keyDown(VirtualKey::A, KeyFlag::Command);
    EXPECT_FALSE(recorder.isRecording.get());

    HotkeyRecorder::RecorderView alone([] {});
    alone.mouseDown();
    EXPECT_TRUE(alone.keyDown(VirtualKey::A, KeyFlag::Command));
    EXPECT_TRUE(alone.isArmed.get());
}

} // namespace
