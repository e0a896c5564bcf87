// SPDX-License-Identifier: MIT
// The wizard in the agent: who gets the hotkey, also when it is struck at a wrong moment.
#include "CoreTest.h"
#include "hotkeys/HotkeyManager.h"
#include "models/ModelStore.h"
#include "shell/onboarding/OnboardingController.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class Wizard : public CoreTest {
protected:
    /// Launches as at the first start, with the model there.
    void launchWizard() {
        world.settings.hasOnboarded.set(false);
        launch();
        world.actor.settle();
    }
    OnboardingController& wizard() { return world.agent().onboarding; }
    void goTo(int step) {
        while (wizard().step.get() < step)
            wizard().advance();
        while (wizard().step.get() > step)
            wizard().back();
    }
};

TEST_F(Wizard, hotkeyAtTheLastStep_feedsTheDemoAndTypesNothing) {
    launchWizard();
    goTo(OnboardingController::DemoStep);
    hold(2);
    runToRest();
    EXPECT_EQ(wizard().demoTranscript.get(), "hello world");
    EXPECT_EQ(world.story(), QStringList());
    EXPECT_EQ(world.wavFiles(), QStringList());
    EXPECT_EQ(state(), State::Idle);
}

TEST_F(Wizard, hotkeyInTapModeAtTheLastStep_beginsAndEndsTheDemo) {
    useTapMode();
    launchWizard();
    goTo(OnboardingController::DemoStep);
    hold(0.1);
    EXPECT_TRUE(wizard().isDemoRecording());
    advance(2);
    hold(0.1);
    EXPECT_FALSE(wizard().isDemoRecording());
    runToRest();
    EXPECT_EQ(wizard().demoTranscript.get(), "hello world");
}

TEST_F(Wizard, hotkeyWhileAChordIsRecorded_startsNoDictation) {
    launchWizard();
    goTo(OnboardingController::HotkeyStep);
    wizard().setRecordsChord(true);
    hold(2);
    runToRest();
    EXPECT_EQ(world.story(), QStringList());
    wizard().setRecordsChord(false);
    hold(2);
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(Wizard, dictationUnderWayWhenTheDemoTakesTheHotkey_endsAsByItsRelease) {
    launchWizard();
    goTo(OnboardingController::HotkeyStep);
    press();
    advance(2);
    EXPECT_EQ(state(), State::Recording);
    wizard().advance();
    EXPECT_EQ(state(), State::Transcribing);
    release();
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
    EXPECT_EQ(state(), State::Idle);
    EXPECT_EQ(world.demoStarts, 0);
    hold(2); // and the demo works
    runToRest();
    EXPECT_EQ(wizard().demoTranscript.get(), "hello world");
}

TEST_F(Wizard, pressThatWaitsWhenAChordIsRecorded_isForgotten) {
    launchWizard();
    goTo(OnboardingController::HotkeyStep);
    press();
    advance(0.3);
    wizard().setRecordsChord(true);
    advance(2);
    release();
    runToRest();
    EXPECT_EQ(state(), State::Idle);
    EXPECT_EQ(world.story(), QStringList());
}

TEST_F(Wizard, keyHeldOverTheEndOfTheWizard_leavesNothingBehind) {
    launchWizard();
    goTo(OnboardingController::DemoStep);
    press();
    advance(1);
    wizard().pressPrimary();
    release();
    runToRest();
    EXPECT_EQ(world.story(), QStringList());
    EXPECT_EQ(world.wavFiles(), QStringList());
    EXPECT_FALSE(world.microphone.isRunning());
    hold(2); // from now on the key dictates
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(Wizard, secondStart_bringsItBackAsLongAsItIsDue) {
    launchWizard();
    world.agent().startedAgain();
    EXPECT_EQ(story({"onboardingWindow"}), QStringList({"onboardingWindow"}));
    goTo(OnboardingController::DemoStep);
    wizard().pressPrimary();
    world.actor.settle();
    world.effects.clear();
    world.agent().startedAgain();
    EXPECT_EQ(story({"onboardingWindow"}), QStringList());
    EXPECT_TRUE(world.windows.menuPanel());
}

TEST_F(Wizard, warmupOfTheModelAtHand_isMirrored) {
    launchWizard();
    EXPECT_TRUE(wizard().didWhisperWarmup.get());
}

} // namespace
