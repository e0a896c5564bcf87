// SPDX-License-Identifier: MIT
// What the wizard's view shows and what its controls do.
#include "shell/onboarding/OnboardingModel.h"
#include "OnboardingFixture.h"
#include "shell/onboarding/AppSample.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class OnboardingModels : public OnboardingFixture {
protected:
    OnboardingModel model{{controller, downloader, readiness, settings, layout, &recorder}};
};

TEST_F(OnboardingModels, navigation_namesTheStepAndItsButton) {
    open();
    EXPECT_EQ(model.stepText(), "Step 1 of 6");
    EXPECT_EQ(model.primaryText(), "Get started");
    EXPECT_FALSE(model.canGoBack());
    finishDownload();
    for (int step = 1; step < model.stepCount() - 1; ++step) {
        model.pressPrimary();
        EXPECT_EQ(model.step(), step);
        EXPECT_EQ(model.primaryText(), "Continue");
        EXPECT_TRUE(model.canGoBack());
    }
    model.pressPrimary();
    EXPECT_EQ(model.stepText(), "Step 6 of 6");
    EXPECT_EQ(model.primaryText(), "Finish");
    model.back();
    EXPECT_EQ(model.stepText(), "Step 5 of 6");
}

TEST_F(OnboardingModels, samples_areSixOfWhichTwoAreSetInLettersOfOneWidth) {
    QStringList mono;
    for (const auto& sample : model.samples()) {
        const auto each = sample.value<AppSample>();
        EXPECT_NE(each.icon, "");
        if (each.mono)
            mono << each.name;
    }
    EXPECT_EQ(model.samples().size(), 6);
    EXPECT_EQ(mono, QStringList({"Terminal", "VS Code"}));
    EXPECT_TRUE(model.samples()[0].value<AppSample>().sample.startsWith("git commit"));
}

TEST_F(OnboardingModels, grantedPermissions_areSaidToBeThere) {
    EXPECT_TRUE(model.permissions()->allSet());
    EXPECT_EQ(model.permissions()->title(), "Talvera has what it needs");
    for (const auto& card : {model.permissions()->microphone(), model.permissions()->accessibility()}) {
        EXPECT_EQ(card.state, "granted");
        EXPECT_EQ(card.action, "");
        EXPECT_EQ(card.cause, "");
    }
}

TEST_F(OnboardingModels, missingMicrophone_isToldWithItsCause) {
    int told = 0;
    QObject::connect(model.permissions(), &PermissionsModel::changed, [&] { ++told; });
    for (const auto& [denial, words] :
         {std::pair{MicrophoneLack::Microphone, "There is no microphone."},
          std::pair{MicrophoneLack::Server, "No sound server is running."},
          std::pair{MicrophoneLack::Permission, "The sound server doesn't let Talvera listen."}}) {
        permission.denial = denial;
        setMissing(true, false);
        const auto card = model.permissions()->microphone();
        EXPECT_EQ(card.state, "denied");
        EXPECT_EQ(card.action, "Open System Settings");
        EXPECT_TRUE(card.cause.startsWith(words)) << card.cause.toStdString();
    }
    EXPECT_GT(told, 0);
    EXPECT_EQ(model.permissions()->title(), "Give Talvera a few powers");
    model.permissions()->allowMicrophone();
    EXPECT_EQ(settingsPanels.opened, std::vector{SettingsPanels::Panel::Microphone});
}

TEST_F(OnboardingModels, microphoneThatWasNotAskedFor_isAskedFor) {
    permission.current = AuthorizationStatus::NotDetermined;
    readiness.refresh();
    EXPECT_EQ(model.permissions()->microphone().state, "needed");
    EXPECT_EQ(model.permissions()->microphone().action, "Allow");
    model.permissions()->allowMicrophone();
    actor.settle();
    EXPECT_EQ(model.permissions()->microphone().state, "granted");
    EXPECT_TRUE(settingsPanels.opened.empty());
}

TEST_F(OnboardingModels, sessionThatLacksWhatNoSettingsGive_hasNoButton) {
    access.lack = SessionLack::KeyPosting;
    setMissing(false, true);
    const auto card = model.permissions()->accessibility();
    EXPECT_EQ(card.state, "denied");
    EXPECT_EQ(card.action, "");
    EXPECT_EQ(
        card.cause,
        "This session doesn't let programs type, or that is switched off. Choose another one when you log "
        "in.");
}

TEST_F(OnboardingModels, sessionWhoseSettingsCanAllowUs_isAskedTo) {
    setMissing(false, true);
    EXPECT_EQ(model.permissions()->accessibility().state, "needed");
    EXPECT_EQ(model.permissions()->accessibility().action, "Allow");
    model.permissions()->allowAccessibility();
    EXPECT_EQ(settingsPanels.opened, std::vector{SettingsPanels::Panel::Accessibility});
}

TEST_F(OnboardingModels, desktopWithoutSettings_givesAdviceUntilTheNextStep) {
    settingsPanels.hasPanels = false;
    setMissing(true, false);
    open();
    goTo(Step::PermissionsStep);
    model.permissions()->allowMicrophone();
    EXPECT_EQ(model.advice(), "Plug in a microphone, or allow one in this desktop's sound settings");
    model.back();
    EXPECT_EQ(model.advice(), "");
}

TEST_F(OnboardingModels, adviceThatWasFollowed_isGone) {
    settingsPanels.hasPanels = false;
    setMissing(true, false);
    controller.openMicrophoneSettings();
    ASSERT_NE(model.advice(), "");
    setMissing(false, false);
    EXPECT_EQ(model.advice(), "");
    EXPECT_TRUE(model.permissions()->allSet());
}

TEST_F(OnboardingModels, recordingOfATappedHotkey_isSaidToEndByATap) {
    auto& demo = *model.demo();
    settings.hotkeyTapToToggle.set(true);
    microphone.secondsPerRecording = 0.1; // which is no dictation
    controller.demoPressStart();
    EXPECT_EQ(demo.caption(), "Recording — tap again when you're done");
    controller.demoPressEnd();
    actor.settle();
    ASSERT_EQ(demo.state(), "idle");
    demo.pressStart(); // the button is held, whatever the hotkey is used like
    EXPECT_EQ(demo.caption(), "Recording — let go when you're done");
    demo.pressEnd();
}

TEST_F(OnboardingModels, question_isShownUntilItIsAnswered) {
    setMissing(true, false);
    open();
    goTo(Step::PermissionsStep);
    model.pressPrimary();
    EXPECT_TRUE(model.asksToSkip());
    model.dismissQuestion();
    EXPECT_FALSE(model.asksToSkip());
    model.pressPrimary();
    model.skipPermissions();
    EXPECT_EQ(model.step(), Step::DownloadStep);
}

TEST_F(OnboardingModels, download_isToldInEveryPhase) {
    auto& download = *model.download();
    EXPECT_EQ(download.fileName(), "Speech model");
    EXPECT_EQ(download.fileSize(), "540 MB");
    EXPECT_EQ(download.phase(), "idle");
    const std::vector<std::pair<Phase, QStringList>> phases{
        {Phase::Downloading, {"downloading", "Downloading model"}},
        {Phase::Verifying, {"verifying", "Verifying integrity"}},
        {Phase::Extracting, {"extracting", "Installing model"}},
        {Phase::Done, {"done", "Model ready"}},
        {Phase::failed("The disk is full."), {"failed", "Download failed"}}};
    for (const auto& [phase, words] : phases) {
        downloader.phase.set(phase);
        EXPECT_EQ(QStringList({download.phase(), download.status()}), words);
    }
    EXPECT_EQ(download.failure(), "The disk is full.");
    EXPECT_EQ(download.title(), "Getting the speech model");
    downloader.phase.set(Phase::Done);
    EXPECT_EQ(download.title(), "The speech model is here");
}

TEST_F(OnboardingModels, downloadUnderWay_countsMegabytesAndPercent) {
    auto& download = *model.download();
    int told = 0;
    QObject::connect(&download, &DownloadModel::progressChanged, [&] { ++told; });
    downloader.phase.set(Phase::Downloading);
    downloader.bytesTotal.set(539212467);
    downloader.bytesWritten.set(226469236);
    downloader.progress.set(0.42);
    EXPECT_EQ(download.progressText(), "226 / 539 MB  ·  42%");
    EXPECT_EQ(download.percentText(), "42%");
    EXPECT_GT(told, 0);
    downloader.progress.set(0.999);
    EXPECT_EQ(download.percentText(), "99%"); // 100 is for when nothing is missing
    downloader.phase.set(Phase::Verifying);
    EXPECT_EQ(download.progressText(), "");
}

TEST_F(OnboardingModels, downloadWithoutANetwork_saysThatItGoesOnByItself) {
    EXPECT_EQ(model.download()->remark(), "");
    downloader.waitsForNetwork.set(true);
    EXPECT_EQ(model.download()->remark(),
              "There is no network. The download goes on by itself when there is one.");
}

TEST_F(OnboardingModels, gate_isToldWhenTheDownloadEnds) {
    open();
    goTo(Step::DownloadStep);
    int told = 0;
    QObject::connect(&model, &OnboardingModel::gateChanged, [&] { ++told; });
    EXPECT_FALSE(model.canGoOn());
    finishDownload();
    EXPECT_TRUE(model.canGoOn());
    EXPECT_GT(told, 0);
}

TEST_F(OnboardingModels, hotkeys_areOfferedInOrderWithOneRecommended) {
    QStringList ids;
    for (const auto& preset : model.hotkey()->presets()) {
        ids << preset.value<HotkeyChoice>().id;
        EXPECT_EQ(preset.value<HotkeyChoice>().recommended, ids.last() == "rcmd");
    }
    EXPECT_EQ(ids, QStringList({"rcmd", "fn", "default", "caps"}));
    EXPECT_EQ(model.hotkey()->selectedId(), "rcmd");
}

TEST_F(OnboardingModels, chosenHotkey_isTheUsersFromThenOn) {
    int told = 0;
    QObject::connect(model.hotkey(), &HotkeyChoiceModel::changed, [&] { ++told; });
    for (const auto* id : {"fn", "default", "caps", "rcmd"}) {
        model.hotkey()->choose(id);
        EXPECT_EQ(model.hotkey()->selectedId(), id);
        EXPECT_EQ(model.hotkey()->fnWarning().isEmpty(), QString(id) != "fn");
    }
    EXPECT_GE(told, 4);
    model.hotkey()->choose("custom");
    EXPECT_EQ(model.hotkey()->selectedId(), "rcmd");
}

TEST_F(OnboardingModels, chordOfTheUsers_isCurrentAndNamed) {
    EXPECT_EQ(model.hotkey()->customText(), "Record a custom chord");
    EXPECT_EQ(model.hotkey()->customKeys(), "");
    settings.hotkeyBinding.set(HotkeyBinding::chord(KeyFlag::Control, VirtualKey::Space));
    EXPECT_EQ(model.hotkey()->selectedId(), "custom");
    EXPECT_EQ(model.hotkey()->customText(), "Custom chord (current)");
    EXPECT_NE(model.hotkey()->customKeys(), "");
}

TEST_F(OnboardingModels, chordThatIsRecorded_suspendsTheHotkeyUntilItIsCaptured) {
    open();
    finishDownload();
    goTo(Step::HotkeyStep);
    int taken = 0;
    controller.onTakingHotkey = [&] { ++taken; };
    recorder.record();
    EXPECT_TRUE(controller.suspendHotkey.get());
    EXPECT_EQ(taken, 1);
    recorder.press(65, 0x20, 4, false); // Ctrl + Space
    EXPECT_FALSE(controller.suspendHotkey.get());
    EXPECT_EQ(model.hotkey()->selectedId(), "custom");
}

TEST_F(OnboardingModels, recordingOfAChord_endsWithItsStepAndWithAPreset) {
    open();
    finishDownload();
    goTo(Step::HotkeyStep);
    recorder.record();
    model.hotkey()->choose("caps");
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_FALSE(controller.suspendHotkey.get());
    recorder.record();
    model.pressPrimary();
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_FALSE(controller.suspendHotkey.get());
    EXPECT_TRUE(controller.captureHotkey.get());
}

TEST_F(OnboardingModels, demo_saysWhatHappens) {
    auto& demo = *model.demo();
    EXPECT_EQ(demo.bodyBefore(), "Press and hold ");
    EXPECT_TRUE(demo.output().contains("moment longer"));
    warmup.didWhisperWarmup.set(true);
    EXPECT_EQ(demo.output(), "Your words will appear here.");
    EXPECT_EQ(demo.caption(), "Hold to talk");
    EXPECT_EQ(demo.title(), "Say something");
    open();
    finishDownload();
    goTo(Step::DemoStep);
    demo.pressStart();
    EXPECT_EQ(demo.state(), "recording");
    demo.pressEnd();
    EXPECT_EQ(demo.state(), "transcribing");
    actor.runToRest(seconds(10));
    EXPECT_EQ(demo.state(), "done");
    EXPECT_EQ(demo.transcript(), "hello world");
    EXPECT_EQ(demo.output(), "");
    EXPECT_EQ(demo.title(), "That's how it works");
    EXPECT_EQ(demo.caption(), "Hold to try again");
}

TEST_F(OnboardingModels, demoWithoutWords_asksForAnotherTry) {
    controller.demoPhase.set({DemoPhase::Kind::Done});
    EXPECT_EQ(model.demo()->output(), "(nothing recognized — try again)");
    EXPECT_EQ(model.demo()->transcript(), "");
}

TEST_F(OnboardingModels, demoThatFails_saysWhy) {
    controller.demoPhase.set(DemoPhase::error("Transcription failed"));
    EXPECT_EQ(model.demo()->output(), "Error: Transcription failed");
}

TEST_F(OnboardingModels, demoWithMissingPermissions_waitsForThemAndUnlocksByItself) {
    setMissing(true, true);
    EXPECT_FALSE(model.demo()->canRun());
    EXPECT_EQ(model.permissions()->missingMicrophone().benefit, "Microphone access");
    EXPECT_EQ(model.permissions()->missingAccessibility().benefit, "Accessibility access");
    int told = 0;
    QObject::connect(model.demo(), &DemoModel::canRunChanged, [&] { ++told; });
    setMissing(false, false);
    EXPECT_TRUE(model.demo()->canRun());
    EXPECT_GT(told, 0);
}

TEST_F(OnboardingModels, tapMode_isWordedAsSuch) {
    settings.hotkeyTapToToggle.set(true);
    EXPECT_EQ(model.demo()->bodyBefore(), "Tap ");
    EXPECT_TRUE(model.demo()->bodyAfter().contains("tap again"));
}

} // namespace
