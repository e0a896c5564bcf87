// SPDX-License-Identifier: MIT
// What a press of the hotkey has to pass before it records, in this order: the wizard, the state, the model,
// the permissions.
#include "CoreTest.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "speech/AudioRecorder.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class PressGate : public CoreTest {
protected:
    void forbidMicrophone() { world.microphonePermission.current = AuthorizationStatus::Denied; }
    void allowMicrophone() { world.microphonePermission.current = AuthorizationStatus::Authorized; }

    /// A dictation whose text is still being recognised, with an empty story so far.
    void beTranscribing() {
        launch();
        hold(1);
        ASSERT_EQ(state(), State::Transcribing);
        world.effects.clear();
    }
};

TEST_F(PressGate, modelMissing_showsTheWizardAndStartsNothing) {
    launch();
    world.setModelReady(false);
    hold(1);
    EXPECT_EQ(world.story(), QStringList({"onboardingWindow"}));
    EXPECT_FALSE(dictation().currentWav());
}

TEST_F(PressGate, microphoneNotAuthorized_asksForItBeforeAccessibility) {
    launch();
    forbidMicrophone();
    world.access.trusted = false;
    hold(1);
    EXPECT_EQ(world.story(), QStringList({"hud permissionRequired microphone"}));
    EXPECT_FALSE(dictation().currentWav());
}

TEST_F(PressGate, accessibilityNotTrusted_asksForIt) {
    launch();
    world.access.trusted = false;
    hold(1);
    EXPECT_EQ(world.story(), QStringList({"hud permissionRequired accessibility"}));
}

TEST_F(PressGate, permissionRequestOfAPress_opensItsSettingsAndGoes) {
    launch();
    world.access.trusted = false;
    hold(1);
    world.agent().hud.stateHolder().openPermissionSettings();
    runToRest();
    EXPECT_EQ(world.story(), QStringList({"hud permissionRequired accessibility",
                                          "openSettings accessibility", "hud hidden"}));
}

TEST_F(PressGate, permissionRequestWhereTheDesktopHasNoSettings_tellsWhatToDoInstead) {
    launch();
    world.access.trusted = false;
    world.settingsPanels.hasPanels = false;
    hold(1);
    world.agent().hud.stateHolder().openPermissionSettings();
    EXPECT_EQ(world.story(),
              QStringList({"hud permissionRequired accessibility",
                           "hud notice This desktop doesn't let Talvera watch keys and type. Allow it in its "
                           "settings. warn 6.0"}));
    runToRest();
    EXPECT_TRUE(hud().as<HUD::Hidden>());
}

TEST_F(PressGate, suspendedHotkey_doesNothing) {
    launch();
    world.agent().onboarding.suspendHotkey.set(true);
    world.agent().onboarding.captureHotkey.set(true);
    hold(1);
    EXPECT_TRUE(world.effects.empty());
    EXPECT_EQ(world.demoStarts, 0);
    EXPECT_EQ(world.demoEnds, 0);
}

TEST_F(PressGate, capturedHotkey_feedsTheWizardsDemo) {
    launch();
    world.agent().onboarding.captureHotkey.set(true);
    hold(1);
    EXPECT_TRUE(world.effects.empty());
    EXPECT_EQ(world.demoStarts, 1);
    EXPECT_EQ(world.demoEnds, 1);
}

TEST_F(PressGate, releaseThatTheWizardGets_doesNotEndARecordingOfOurs) {
    launch();
    press();
    advance(1);
    world.agent().onboarding.captureHotkey.set(true);
    release();
    world.actor.settle();
    EXPECT_EQ(state(), State::Recording);
    world.agent().onboarding.captureHotkey.set(false);
    release();
    world.actor.settle();
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(PressGate, pressDuringADictationWithoutModel_opensNoWizard) {
    beTranscribing();
    world.setModelReady(false);
    press();
    world.actor.settle();
    EXPECT_EQ(world.story(), QStringList());
    release();
}

TEST_F(PressGate, pressDuringADictationWithoutPermission_showsNoCard) {
    beTranscribing();
    forbidMicrophone();
    press();
    world.actor.settle();
    EXPECT_EQ(world.story(), QStringList());
    allowMicrophone();
    release();
}

TEST_F(PressGate, pressWithoutModelAndPermission_opensTheWizardAlone) {
    launch();
    world.setModelReady(false);
    forbidMicrophone();
    press();
    world.actor.settle();
    EXPECT_EQ(world.story(), QStringList({"onboardingWindow"}));
    allowMicrophone();
    release();
}

TEST_F(PressGate, pressWithoutPermission_showsTheCardAlone) {
    launch();
    forbidMicrophone();
    press();
    world.actor.settle();
    EXPECT_EQ(world.story(), QStringList({"hud permissionRequired microphone"}));
    allowMicrophone();
    release();
}

TEST_F(PressGate, tapOfExactlyTheLeastTime_isADictation) {
    useTapMode();
    launch();
    press();
    advance(0.2);
    press();
    world.actor.settle();
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(PressGate, recordingOfExactlyTheLeastLength_isADictation) {
    launch();
    hear(0.3);
    hold(1);
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(PressGate, recordingOfOneSampleLess_isDiscardedAndItsLengthTraced) {
    launch();
    hear(4799.0 / 16000);
    hold(0.7);
    EXPECT_EQ(state(), State::Idle);
    EXPECT_EQ(world.traces(), QStringList({"Press too short (held 0.7s, audio 0.2999375s) — discarding."}));
}

TEST_F(PressGate, levelsOfTheFirstMoment_reachTheMeter) {
    launch();
    // A loud buffer that comes with the start itself.
    world.audioEngine.onStarted = [this] {
        world.microphone.deliver(std::vector<std::int16_t>(4096, 20000));
    };
    press();
    advance(0.7);
    EXPECT_GT(world.agent().hud.stateHolder().level.get(), 0.0F);
    world.audioEngine.onStarted = nullptr;
    release();
}

TEST_F(PressGate, levelsAfterTheRelease_doNotReachTheMeter) {
    launch();
    dictate();
    int levels = 0;
    const auto observation = world.agent().hud.stateHolder().level.observe([&levels](float) { ++levels; });
    world.agent().recorder.start();
    world.microphone.deliver(std::vector<std::int16_t>(4096, 20000));
    world.actor.settle();
    EXPECT_EQ(levels, 0);
}

TEST_F(PressGate, recordingThatCannotStart_forgetsTheFocusOfTheOneBefore) {
    launch();
    dictate();
    ASSERT_TRUE(dictation().focusSnapshot());
    world.microphone.startFailure.emplace(QStringLiteral("AudioEngine"), 2, QStringLiteral("no input"));
    hold(1);
    EXPECT_FALSE(dictation().focusSnapshot());
}

TEST_F(PressGate, recordingWithoutATextField_forgetsTheFocusOfTheOneBefore) {
    launch();
    dictate();
    ASSERT_TRUE(dictation().focusSnapshot());
    world.setTextFieldFocused(false);
    press();
    advance(1);
    EXPECT_FALSE(dictation().focusSnapshot());
    release();
}

TEST_F(PressGate, recordingJustBeyondTheLimit_isSplitAndOneAtItIsNot) {
    launch();
    hear(28.0);
    dictate();
    EXPECT_EQ(story({"recognise"}).size(), 1);
    world.effects.clear();
    hear(28.5);
    dictate();
    EXPECT_EQ(story({"recognise"}).size(), 2);
}

} // namespace
