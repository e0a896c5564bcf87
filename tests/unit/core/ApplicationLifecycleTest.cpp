// SPDX-License-Identifier: MIT
#include "CoreTest.h"
#include "hotkeys/HotkeyManager.h"
#include "hotkeys/TranslateToggleHotkey.h"
#include "shell/hud/DictationHUDController.h"
#include "shell/onboarding/OnboardingController.h"
#include "shell/readiness/ReadinessMonitor.h"

using namespace talvera;
using namespace talvera::test;

namespace {

using Policy = ActivationPolicy;

class Lifecycle : public CoreTest {
protected:
    void finishOnboarding() { world.settings.hasOnboarded.set(true); }
    void revokeAccessibility() {
        world.access.trusted = false;
        world.keyboard.refusesTaps = true;
    }
    void grantAccessibility() {
        world.access.trusted = true;
        world.keyboard.refusesTaps = false;
    }
    void refresh() {
        world.agent().readiness.refresh();
        world.actor.settle();
    }
    QString hudName() { return caseName(hud()); }
    bool asksFor(HUD::PermissionKind kind) { return hud() == HUD(HUD::PermissionRequired{kind}); }
    /// Lets go of what would poll for ever.
    void settleDown() {
        world.microphonePermission.current = AuthorizationStatus::Authorized;
        grantAccessibility();
        refresh();
    }
};

TEST_F(Lifecycle, launchWithEverythingGranted_showsNothing) {
    world.launch();
    launched = true;
    EXPECT_TRUE(world.story().isEmpty());
    EXPECT_EQ(world.application.directory, "/run/talvera");
    EXPECT_EQ(world.application.policies, (std::vector{Policy::Accessory, Policy::Accessory}));
    EXPECT_TRUE(world.agent().hotkey.eventTap());
    EXPECT_FALSE(world.actor.hasTimers());
    EXPECT_EQ(world.console.printed(),
              QStringList({"[app] applicationDidFinishLaunching: calling Warmup.primeAll",
                           "[warmup] primeAll: scheduling whisper + AI tasks",
                           "[warmup] primeWhisper: enter (ModelStore.isReady=true)",
                           "[warmup] whisper ready in 0.00s",
                           "[warmup] primeAppleIntelligence: enter (AICleanup.isAvailable=false)"}));
}

TEST_F(Lifecycle, firstLaunchWithNothingGranted_opensTheWizardAndAsksForNothingOnTheHUD) {
    world.settings.hasOnboarded.set(false);
    world.microphonePermission.current = AuthorizationStatus::NotDetermined;
    revokeAccessibility();
    world.setModelReady(false);
    world.launch();
    launched = true;
    EXPECT_EQ(world.story(), QStringList({"onboardingWindow"}));
    EXPECT_EQ(world.application.policies, (std::vector{Policy::Accessory, Policy::Regular}));
    EXPECT_TRUE(world.preferences.boolean("launchAtLoginDefaultApplied"));
    EXPECT_TRUE(world.loginItem.registered);
    settleDown();
}

TEST_F(Lifecycle, firstLaunchWithTheModelThere_opensTheWizardAllTheSame) {
    world.settings.hasOnboarded.set(false);
    launch();
    EXPECT_EQ(world.application.policies, (std::vector{Policy::Accessory, Policy::Regular}));
    EXPECT_TRUE(world.windows.wizard());
}

TEST_F(Lifecycle, desktopWithoutATray_isToldOfUntilTheUserHasReadIt) {
    launch();
    ASSERT_TRUE(world.statusItem.onNoTray);
    world.statusItem.onNoTray();
    EXPECT_TRUE(hud().as<HUD::Notice>());
    EXPECT_TRUE(world.preferences.boolean("noTrayHintShown"));
}

TEST_F(Lifecycle, onceTheUserHasReadOfTheMissingTray_itIsNotLookedForAnyMore) {
    world.preferences.set("noTrayHintShown", true);
    launch();
    EXPECT_FALSE(world.statusItem.onNoTray);
}

TEST_F(Lifecycle, launchWithTheModelDeleted_opensTheWizardWhoseEndMakesUsAnAgentAgain) {
    world.setModelReady(false);
    world.launch();
    launched = true;
    EXPECT_EQ(world.story(), QStringList({"onboardingWindow"}));
    world.application.policies.clear();
    finishOnboarding(); // again: the value is the same
    world.actor.settle();
    EXPECT_EQ(world.application.policies, std::vector{Policy::Accessory});
}

TEST_F(Lifecycle, launchWithAccessibilityRevoked_asksAndRepairsTheTapWhenItComesBack) {
    revokeAccessibility();
    world.launch();
    launched = true;
    EXPECT_TRUE(asksFor(HUD::PermissionKind::Accessibility));
    EXPECT_FALSE(world.agent().hotkey.eventTap());
    grantAccessibility();
    advance(2.0); // it is noticed within two seconds
    EXPECT_TRUE(world.agent().hotkey.eventTap());
    EXPECT_TRUE(world.traces().contains("Hotkey event tap installed after AX grant (installed=true)."));
    advance(0.2);
    EXPECT_TRUE(hud().as<HUD::Hidden>());
    EXPECT_FALSE(world.actor.hasTimers());
}

TEST_F(Lifecycle, trustThatBringsNoTap_isTracedAndTriedAgain) {
    revokeAccessibility();
    world.launch();
    launched = true;
    world.access.trusted = true; // but the session still refuses
    refresh();
    EXPECT_TRUE(world.traces().contains("Hotkey event tap installed after AX grant (installed=false)."));
    settleDown();
}

TEST_F(Lifecycle, withdrawnTrust_leavesTheTapsAlone) {
    launch();
    world.access.trusted = false;
    refresh();
    EXPECT_TRUE(world.agent().hotkey.eventTap());
    EXPECT_EQ(world.keyboard.tapsCreated(), 2);
    settleDown();
}

TEST_F(Lifecycle, finishedWizardWithAPermissionMissing_asksForIt) {
    world.settings.hasOnboarded.set(false);
    world.microphonePermission.current = AuthorizationStatus::Denied;
    launch();
    EXPECT_EQ(hudName(), "hidden");
    finishOnboarding();
    world.actor.settle();
    EXPECT_TRUE(asksFor(HUD::PermissionKind::Microphone));
    settleDown();
}

TEST_F(Lifecycle, launchWithoutTrust_doesNotRepairTheTaps) {
    revokeAccessibility();
    world.launch();
    launched = true;
    EXPECT_EQ(world.traces().filter("event tap"), QStringList());
    settleDown();
}

TEST_F(Lifecycle, bothPermissionsMissing_asksForAccessibilityFirstThenTheMicrophone) {
    revokeAccessibility();
    world.microphonePermission.current = AuthorizationStatus::Denied;
    world.launch();
    launched = true;
    EXPECT_TRUE(asksFor(HUD::PermissionKind::Accessibility));
    grantAccessibility();
    refresh();
    EXPECT_TRUE(asksFor(HUD::PermissionKind::Microphone));
    settleDown();
    advance(0.2);
    EXPECT_TRUE(hud().as<HUD::Hidden>());
}

TEST_F(Lifecycle, dismissedRequest_staysAwayWhileSomethingIsStillMissing) {
    revokeAccessibility();
    world.microphonePermission.current = AuthorizationStatus::NotDetermined;
    launch();
    world.agent().hud.stateHolder().dismissPermission();
    advance(0.2);
    ASSERT_TRUE(hud().as<HUD::Hidden>());
    world.microphonePermission.current = AuthorizationStatus::Denied;
    refresh();
    EXPECT_TRUE(hud().as<HUD::Hidden>());
    settleDown();
}

TEST_F(Lifecycle, dismissedRequest_comesBackForALossAfterEverythingWasGranted) {
    revokeAccessibility();
    launch();
    world.agent().hud.stateHolder().dismissPermission();
    advance(0.2);
    grantAccessibility();
    refresh();
    revokeAccessibility();
    refresh();
    EXPECT_TRUE(asksFor(HUD::PermissionKind::Accessibility));
    settleDown();
}

TEST_F(Lifecycle, openedSettingsWithoutAGrant_theNextChangeAsksAgain) {
    revokeAccessibility();
    launch();
    world.agent().hud.stateHolder().openPermissionSettings();
    EXPECT_EQ(story({"openSettings"}), QStringList({"openSettings accessibility"}));
    advance(0.2);
    ASSERT_TRUE(hud().as<HUD::Hidden>());
    world.microphonePermission.current = AuthorizationStatus::Denied;
    refresh();
    EXPECT_TRUE(asksFor(HUD::PermissionKind::Accessibility));
    settleDown();
}

TEST_F(Lifecycle, requestOfAPressDismissed_countsAsDismissedAltogether) {
    launch();
    world.microphonePermission.current = AuthorizationStatus::Denied;
    hold(0.7);
    ASSERT_TRUE(asksFor(HUD::PermissionKind::Microphone));
    world.agent().hud.stateHolder().dismissPermission();
    advance(0.2);
    refresh();
    EXPECT_TRUE(hud().as<HUD::Hidden>());
    settleDown();
}

TEST_F(Lifecycle, unchangedInputs_areNotLookedAtAgain) {
    revokeAccessibility();
    launch();
    world.agent().hud.stateHolder().openPermissionSettings();
    advance(0.2);
    world.effects.clear();
    finishOnboarding(); // the same value: nothing new
    advance(0.2);
    EXPECT_EQ(story({"hud"}), QStringList());
    settleDown();
}

TEST_F(Lifecycle, launchAtLogin_isTurnedOnOnceAndNeverAgain) {
    launch();
    EXPECT_EQ(world.loginItem.registrations, 1);
    world.loginItem.registered = false; // the user turns it off
    Agent next(world.machine(), world.settings, world.windows);
    next.launch();
    world.actor.settle();
    EXPECT_FALSE(world.loginItem.registered);
}

TEST_F(Lifecycle, failedLaunchAtLogin_isDroppedAndNotTriedAgain) {
    world.loginItem.fails = true;
    launch();
    EXPECT_TRUE(world.preferences.boolean("launchAtLoginDefaultApplied"));
    Agent next(world.machine(), world.settings, world.windows);
    next.launch();
    world.actor.settle();
    EXPECT_EQ(world.loginItem.registrations, 1);
}

TEST_F(Lifecycle, translateHotkey_flipsBetweenOffAndTheLastTarget) {
    world.settings.targetLanguageCode.set("de");
    launch();
    auto& trigger = world.agent().translateToggle.onTrigger;
    trigger();
    world.actor.settle();
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "off");
    trigger();
    world.actor.settle();
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "de");
}

TEST_F(Lifecycle, translateHotkeyWhileTranslationIsOff_goesToTheStoredLastTarget) {
    world.settings.lastTargetLanguageCode.set("fr");
    launch();
    world.agent().translateToggle.onTrigger();
    world.actor.settle();
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "fr");
    EXPECT_EQ(world.preferences.string("targetLanguageCode"), "fr");
}

TEST_F(Lifecycle, translateHotkey_changesNothingOfADictationInFlight) {
    launch();
    hold(2);
    world.agent().translateToggle.onTrigger();
    runToRest();
    EXPECT_EQ(story({"recognise"}), QStringList({"recognise transcribe auto null 2.0"}));
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "en");
}

TEST_F(Lifecycle, newBinding_reachesTheHotkey) {
    launch();
    world.settings.hotkeyBinding.set(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::Space));
    world.actor.settle();
    ASSERT_EQ(world.keyboard.taps().size(), 2U);
    EXPECT_EQ(world.keyboard.taps().front()->watchedChord(), (KeyChord{KeyFlag::Control, VirtualKey::Space}));
}

TEST_F(Lifecycle, storedTranslateBinding_isWatchedFromTheLaunchOnByTheNewerTap) {
    world.settings.translateToggleBinding.set(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K));
    Agent agent(world.machine(), world.settings, world.windows);
    agent.launch();
    ASSERT_EQ(world.keyboard.taps().size(), 2U); // before any later turn
    EXPECT_EQ(world.keyboard.taps().back()->watchedChord(), (KeyChord{KeyFlag::Control, VirtualKey::K}));
    agent.stop();
    world.actor.settle();
}

TEST_F(Lifecycle, translateChord_flipsTranslation) {
    world.settings.targetLanguageCode.set("de");
    launch();
    for (const auto key : {VirtualKey::Control, VirtualKey::Option, VirtualKey::Command})
        world.keyboard.press(key);
    world.keyboard.tap(VirtualKey::T);
    world.actor.settle();
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "off");
    world.keyboard.tap(VirtualKey::T);
    world.actor.settle();
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "de");
}

TEST_F(Lifecycle, newTranslateBinding_reachesTheToggleAndAClearedOneFreesTheChord) {
    launch();
    world.settings.translateToggleBinding.set(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::K));
    world.actor.settle();
    const auto* tap = world.keyboard.taps().back();
    EXPECT_EQ(tap->watchedChord(), (KeyChord{KeyFlag::Control, VirtualKey::K}));
    world.settings.translateToggleBinding.set(std::nullopt);
    world.actor.settle();
    EXPECT_FALSE(tap->watchedChord());
}

TEST_F(Lifecycle, shortcutThatIsRecorded_leavesItsKeyAloneToTheFieldUntilItIsDone) {
    launch();
    world.agent().onboarding.suspendHotkey.set(true);
    EXPECT_FALSE(world.keyboard.taps().front()->watchedKey());
    world.keyboard.press(VirtualKey::RightCommand); // which the field takes
    world.agent().onboarding.suspendHotkey.set(false);
    EXPECT_TRUE(world.keyboard.taps().front()->watchedKey());
    world.keyboard.release(VirtualKey::RightCommand);
    runToRest();
    EXPECT_EQ(story({"menu", "hud", "recorder"}), QStringList());
}

TEST_F(Lifecycle, shortcutThatIsRecorded_leavesBoundChordsWhereTheyAre) {
    world.settings.hotkeyBinding.set(HotkeyBinding());
    world.settings.targetLanguageCode.set("de");
    launch();
    world.agent().onboarding.suspendHotkey.set(true);
    world.actor.settle();
    for (const auto key : {VirtualKey::Control, VirtualKey::Option, VirtualKey::Space})
        world.keyboard.press(key);
    world.actor.settle();
    world.keyboard.release(VirtualKey::Space);
    runToRest();
    EXPECT_EQ(story({"menu", "hud", "recorder"}), QStringList());
    world.keyboard.press(VirtualKey::Command);
    world.keyboard.tap(VirtualKey::T);
    world.actor.settle();
    EXPECT_EQ(world.settings.targetLanguageCode.get(), "off");
    for (const auto& event : world.keyboard.passed())
        EXPECT_TRUE(isModifierKey(event.keyCode) || event.type == KeyEventType::KeyUp);
}

TEST_F(Lifecycle, translateBindingThatAnotherProgramHolds_isToldToTheUserAtTheStart) {
    world.keyboard.takenChords = {{KeyFlag::Control | KeyFlag::Option | KeyFlag::Command, VirtualKey::T}};
    world.launch();
    launched = true;
    EXPECT_EQ(story({"hud"}), QStringList({"hud notice Another program uses your translation shortcut — "
                                           "choose another one warn 6.0"}));
}

TEST_F(Lifecycle, translateBindingThatNoKeyboardHas_isToldToTheUser) {
    world.keyboard.missingKeys = {VirtualKey::T};
    world.launch();
    launched = true;
    EXPECT_EQ(story({"hud"}),
              QStringList({"hud notice No keyboard here has your translation shortcut warn 6.0"}));
}

TEST_F(Lifecycle, bothBindingsRefused_areToldInOneSentence) {
    world.keyboard.missingKeys = {VirtualKey::RightCommand, VirtualKey::T};
    world.launch();
    launched = true;
    EXPECT_EQ(story({"hud"}).last(),
              "hud notice Neither your hotkey nor your translation shortcut can be had — choose other ones "
              "warn 6.0");
}

TEST_F(Lifecycle, bindingThatAnotherProgramHolds_isToldToTheUser) {
    launch();
    world.keyboard.takenChords = {{KeyFlag::Control, VirtualKey::Space}};
    world.settings.hotkeyBinding.set(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::Space));
    world.actor.settle();
    EXPECT_EQ(story({"hud"}),
              QStringList({"hud notice Another program uses your hotkey — choose another one warn 6.0"}));
}

TEST_F(Lifecycle, keyAloneWhereChordsAloneAreTold_isToldToTheUser) {
    world.keyboard.tellsChordsOnly = true;
    launch();
    world.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn));
    world.actor.settle();
    EXPECT_EQ(story({"hud"}).last(),
              "hud notice A key held alone can't be your hotkey here — choose several, such "
              "as ⌃⌥Space warn 6.0");
}

TEST_F(Lifecycle, bindingRefusedDuringADictation_isToldAfterIt) {
    launch();
    hold(1);
    world.keyboard.takenChords = {{KeyFlag::Control, VirtualKey::Space}};
    world.settings.hotkeyBinding.set(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::Space));
    world.actor.settle();
    EXPECT_TRUE(hud().as<HUD::Transcribing>());
    runToRest();
    EXPECT_EQ(story({"hud"}).value(3),
              "hud notice Another program uses your hotkey — choose another one warn 6.0");
}

TEST_F(Lifecycle, bindingThatNoKeyboardHas_isToldToTheUser) {
    world.keyboard.missingKeys = {VirtualKey::Fn};
    launch();
    world.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn));
    world.actor.settle();
    EXPECT_EQ(story({"hud"}), QStringList({"hud notice No keyboard here has your hotkey warn 6.0"}));
}

TEST_F(Lifecycle, launchWithAHotkeyOfTheUsers_neverWaitsForAnother) {
    const HotkeyBinding usual;
    world.keyboard.takenChords = {{usual.asChord()->modifiers, usual.asChord()->keyCode}}; // which is told
    world.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::Fn));
    world.launch();
    launched = true;
    world.actor.settle();
    EXPECT_EQ(story({"hud"}), QStringList());
    // By the time that the user would be told the right one is waited for, but the log has it.
    EXPECT_EQ(world.console.logged().filter("HotkeyManager"), QStringList());
}

TEST_F(Lifecycle, hotkeyOfAKeyboard_dictates) {
    launch();
    world.keyboard.press(VirtualKey::RightCommand);
    advance(1.5);
    EXPECT_EQ(state(), State::Recording);
    world.keyboard.release(VirtualKey::RightCommand);
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(Lifecycle, otherKeyStruckBeforeRecording_cancelsThePressWithoutATrace) {
    launch();
    world.keyboard.press(VirtualKey::RightCommand);
    advance(0.3);
    world.keyboard.tap(VirtualKey::Left);
    advance(1.5);
    EXPECT_EQ(state(), State::Idle);
    EXPECT_FALSE(dictation().currentWav());
    EXPECT_FALSE(dictation().pressStartedAt());
    world.keyboard.release(VirtualKey::RightCommand);
    runToRest();
    EXPECT_EQ(world.story(), QStringList());

    world.keyboard.press(VirtualKey::RightCommand); // the next press is one like any other
    advance(1.5);
    EXPECT_EQ(state(), State::Recording);
    world.keyboard.release(VirtualKey::RightCommand);
    runToRest();
}

TEST_F(Lifecycle, otherKeyStruckWhileRecording_changesNothing) {
    launch();
    world.keyboard.press(VirtualKey::RightCommand);
    advance(1.0);
    world.keyboard.tap(VirtualKey::Left);
    advance(0.5);
    EXPECT_EQ(state(), State::Recording);
    world.keyboard.release(VirtualKey::RightCommand);
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(Lifecycle, otherKeyStruckInTapMode_changesNothing) {
    useTapMode();
    launch();
    world.keyboard.press(VirtualKey::RightCommand);
    world.actor.settle();
    world.keyboard.tap(VirtualKey::Left);
    world.keyboard.release(VirtualKey::RightCommand);
    advance(1.5);
    EXPECT_EQ(state(), State::Recording);
    world.keyboard.tap(VirtualKey::RightCommand);
    runToRest();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(Lifecycle, rebindingDuringAHold_endsThePress) {
    launch();
    world.keyboard.press(VirtualKey::RightCommand);
    advance(1.5);
    world.settings.hotkeyBinding.set(HotkeyBinding::holdSpecial(HotkeyBinding::SpecialKey::RightOption));
    world.actor.settle();
    EXPECT_EQ(state(), State::Transcribing);
    world.keyboard.release(VirtualKey::RightCommand);
    runToRest();
    EXPECT_EQ(story({"type"}).size(), 1);
}

} // namespace
