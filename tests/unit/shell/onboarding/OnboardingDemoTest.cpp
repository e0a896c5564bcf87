// SPDX-License-Identifier: MIT
// The wizard's demo dictation, and the hotkey's presses at every wrong moment.
#include "OnboardingFixture.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class OnboardingDemo : public OnboardingFixture {
protected:
    OnboardingDemo() {
        open();
        finishDownload();
        goTo(Step::DemoStep);
    }
    void runToRest() { EXPECT_TRUE(actor.runToRest(seconds(100))); }
    void expectLeavingThrowsAway(const std::function<void()>& leave) {
        goTo(Step::DemoStep);
        controller.demoPressStart();
        EXPECT_EQ(demo(), Demo::Recording);
        leave();
        EXPECT_EQ(demo(), Demo::Idle);
        EXPECT_FALSE(microphone.isRunning());
        EXPECT_EQ(recordings(), QStringList());
        controller.demoPressEnd();
        runToRest();
        EXPECT_TRUE(tool.requests().empty());
    }
};

TEST_F(OnboardingDemo, pressAndRelease_showTheTextAndLeaveNoFile) {
    settings.sourceLanguageCode.set("de");
    controller.demoPressStart();
    EXPECT_EQ(demo(), Demo::Recording);
    EXPECT_TRUE(microphone.isRunning());
    controller.demoPressEnd();
    EXPECT_EQ(demo(), Demo::Transcribing);
    EXPECT_EQ(recordings(), QStringList{"/run/talvera/talvera-demo-NAME-1.wav"});
    runToRest();
    EXPECT_EQ(demo(), Demo::Done);
    EXPECT_EQ(controller.demoTranscript.get(), "hello world");
    EXPECT_TRUE(warmup.didWhisperWarmup.get());
    EXPECT_EQ(recordings(), QStringList());
    ASSERT_EQ(tool.requests().size(), 1u);
    EXPECT_EQ(tool.requests()[0].language, "de");
    EXPECT_FALSE(tool.requests()[0].translates);
}

TEST_F(OnboardingDemo, slipOfTheFinger_showsNothingAndLeavesNoFile) {
    microphone.secondsPerRecording = 0.2;
    hold(0.2);
    EXPECT_EQ(demo(), Demo::Idle);
    EXPECT_EQ(controller.demoTranscript.get(), "");
    EXPECT_EQ(recordings(), QStringList());
    runToRest();
    EXPECT_TRUE(tool.requests().empty());
}

TEST_F(OnboardingDemo, pressWhileTranscribing_isIgnored) {
    hold(2);
    controller.demoPressStart();
    EXPECT_EQ(demo(), Demo::Transcribing);
    EXPECT_FALSE(microphone.isRunning());
    controller.demoPressEnd();
    runToRest();
    EXPECT_EQ(controller.demoTranscript.get(), "hello world");
    EXPECT_EQ(tool.requests().size(), 1u);
}

TEST_F(OnboardingDemo, pressWhileRecording_isIgnored) {
    controller.demoPressStart();
    controller.demoPressStart();
    EXPECT_EQ(microphone.starts, 1);
    EXPECT_EQ(names, 1);
    controller.demoPressEnd();
    EXPECT_EQ(demo(), Demo::Transcribing);
    runToRest();
}

TEST_F(OnboardingDemo, releaseWithoutAPress_isIgnored) {
    controller.demoPressEnd();
    EXPECT_EQ(demo(), Demo::Idle);
    hold(2);
    runToRest();
    controller.demoPressEnd();
    EXPECT_EQ(demo(), Demo::Done);
}

TEST_F(OnboardingDemo, nextPress_startsAfresh) {
    hold(2);
    runToRest();
    controller.demoPressStart();
    EXPECT_EQ(demo(), Demo::Recording);
    EXPECT_EQ(controller.demoTranscript.get(), "");
    say("second");
    controller.demoPressEnd();
    runToRest();
    EXPECT_EQ(controller.demoTranscript.get(), "second");
}

TEST_F(OnboardingDemo, microphoneThatCannotBeOpened_isToldAndTheNextPressTriesAgain) {
    microphone.startFailure = PlatformError(QStringLiteral("PulseAudio"), 1, "refused");
    controller.demoPressStart();
    EXPECT_EQ(
        controller.demoPhase.get(),
        DemoPhase::error("The microphone can't be opened. Plug one in, or allow it in the sound settings."));
    controller.demoPressEnd();
    EXPECT_EQ(demo(), Demo::Error);
    microphone.startFailure.reset();
    hold(2);
    runToRest();
    EXPECT_EQ(demo(), Demo::Done);
}

TEST_F(OnboardingDemo, recordingThatCannotBeSaved_isToldAndLeavesNoFile) {
    controller.demoPressStart();
    files.failWriteAfter(0, ENOSPC);
    controller.demoPressEnd();
    EXPECT_EQ(controller.demoPhase.get(), DemoPhase::error("Couldn't save recording"));
    EXPECT_EQ(recordings(), QStringList());
}

TEST_F(OnboardingDemo, recogniserThatFails_isToldAndLeavesNoFile) {
    ToolRun run;
    run.status = 1;
    run.standardError = "broken";
    tool.setRuns({run});
    hold(2);
    runToRest();
    EXPECT_EQ(controller.demoPhase.get(), DemoPhase::error("Transcription failed"));
    EXPECT_FALSE(warmup.didWhisperWarmup.get());
    EXPECT_EQ(recordings(), QStringList());
}

TEST_F(OnboardingDemo, silence_isDoneWithoutAText) {
    say("");
    hold(2);
    runToRest();
    EXPECT_EQ(demo(), Demo::Done);
    EXPECT_EQ(controller.demoTranscript.get(), "");
}

TEST_F(OnboardingDemo, backWhileRecording_throwsTheRecordingAway) {
    expectLeavingThrowsAway([this] { controller.back(); });
}

TEST_F(OnboardingDemo, closedWhileRecording_throwsTheRecordingAway) {
    expectLeavingThrowsAway([this] { close(); });
}

TEST_F(OnboardingDemo, finishedWhileRecording_throwsTheRecordingAway) {
    expectLeavingThrowsAway([this] { controller.pressPrimary(); });
    EXPECT_TRUE(settings.hasOnboarded.get());
}

TEST_F(OnboardingDemo, closedWhileTranscribing_dropsTheTextAndTheFile) {
    hold(2);
    close();
    runToRest();
    EXPECT_EQ(demo(), Demo::Idle);
    EXPECT_EQ(controller.demoTranscript.get(), "");
    EXPECT_EQ(recordings(), QStringList());
}

TEST_F(OnboardingDemo, backWhileTranscribing_findsTheTextOnReturn) {
    hold(2);
    controller.back();
    runToRest();
    controller.advance();
    EXPECT_EQ(controller.demoTranscript.get(), "hello world");
}

TEST_F(OnboardingDemo, text_goesWithTheWindowThatShowedIt) {
    hold(2);
    runToRest();
    close();
    EXPECT_EQ(controller.demoTranscript.get(), "");
    EXPECT_EQ(demo(), Demo::Idle);
}

TEST_F(OnboardingDemo, level_isToldWhileItRecords) {
    controller.demoPressStart();
    microphone.deliver(std::vector<std::int16_t>(8192, 16000));
    actor.settle();
    EXPECT_GT(controller.demoLevel.get(), 0);
    controller.demoPressEnd();
    runToRest();
}

TEST_F(OnboardingDemo, hotkey_isTakenOnTheLastStepAlone) {
    EXPECT_TRUE(controller.captureHotkey.get());
    controller.back();
    EXPECT_FALSE(controller.captureHotkey.get());
    controller.advance();
    EXPECT_TRUE(controller.captureHotkey.get());
}

TEST_F(OnboardingDemo, takingTheHotkey_isToldBeforeItHappensAndOnce) {
    std::vector<bool> takenBefore;
    controller.back();
    controller.onTakingHotkey = [&] { takenBefore.push_back(controller.captureHotkey.get()); };
    controller.advance();
    EXPECT_EQ(takenBefore, std::vector{false});
    open(); // brought to the front
    EXPECT_EQ(takenBefore.size(), 1u);
}

TEST_F(OnboardingDemo, chordBeingRecorded_suspendsTheHotkeyOnItsStepAlone) {
    controller.setRecordsChord(true);
    EXPECT_FALSE(controller.suspendHotkey.get());
    controller.back();
    controller.setRecordsChord(true);
    EXPECT_TRUE(controller.suspendHotkey.get());
    controller.setRecordsChord(false);
    EXPECT_FALSE(controller.suspendHotkey.get());
}

TEST_F(OnboardingDemo, chordBeingRecordedWhenTheUserLeaves_suspendsNothingAfter) {
    controller.back();
    controller.setRecordsChord(true);
    controller.advance();
    EXPECT_FALSE(controller.suspendHotkey.get());
    controller.back();
    controller.setRecordsChord(true);
    close();
    EXPECT_FALSE(controller.suspendHotkey.get());
}

} // namespace
