// SPDX-License-Identifier: MIT
// The steps of the wizard, and what keeps the user on one.
#include "OnboardingFixture.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class Onboarding : public OnboardingFixture {};

TEST_F(Onboarding, firstStart_beginsAtTheWelcomeAndDownloadsAtOnce) {
    EXPECT_TRUE(downloader.phase.get() == Phase::Idle);
    open();
    EXPECT_EQ(controller.step.get(), Step::WelcomeStep);
    EXPECT_TRUE(downloader.phase.get() == Phase::Downloading);
    EXPECT_FALSE(controller.captureHotkey.get());
    EXPECT_FALSE(controller.suspendHotkey.get());
    EXPECT_EQ(demo(), Demo::Idle);
    EXPECT_FALSE(settings.hasOnboarded.get());
}

TEST_F(Onboarding, back_goesOneStepDownAndStopsAtTheFirst) {
    open();
    controller.advance();
    controller.back();
    EXPECT_EQ(controller.step.get(), Step::WelcomeStep);
    controller.back();
    EXPECT_EQ(controller.step.get(), Step::WelcomeStep);
}

TEST_F(Onboarding, downloadThatEndsBeforeItsStep_leavesTheButtonFreeThere) {
    open();
    goTo(Step::EverywhereStep);
    finishDownload();
    goTo(Step::DownloadStep);
    EXPECT_TRUE(controller.canGoOn());
    EXPECT_EQ(controller.hint(), "");
    controller.pressPrimary();
    EXPECT_EQ(controller.step.get(), Step::HotkeyStep);
}

TEST_F(Onboarding, downloadUnderWay_holdsTheUserUpAndSaysWhy) {
    open();
    goTo(Step::DownloadStep);
    EXPECT_FALSE(controller.canGoOn());
    EXPECT_EQ(controller.hint(), "Waiting for model download…");
    controller.pressPrimary();
    EXPECT_EQ(controller.step.get(), Step::DownloadStep);
    for (const auto phase : {Phase::Idle, Phase::Verifying, Phase::Extracting}) {
        downloader.phase.set(phase);
        EXPECT_FALSE(controller.canGoOn());
        EXPECT_EQ(controller.hint(), "Waiting for model download…");
    }
}

TEST_F(Onboarding, failedDownload_asksForARetryAndWaitsAgainAfterIt) {
    open();
    goTo(Step::DownloadStep);
    downloader.phase.set(Phase::failed("no network"));
    EXPECT_FALSE(controller.canGoOn());
    EXPECT_EQ(controller.hint(), "Download failed — retry to continue");
    controller.pressPrimary();
    EXPECT_EQ(controller.step.get(), Step::DownloadStep);
    downloader.retry();
    EXPECT_FALSE(controller.canGoOn());
    EXPECT_EQ(controller.hint(), "Waiting for model download…");
}

TEST_F(Onboarding, failedDownload_isTriedAgainOnArrivalAtItsStep) {
    open();
    downloader.phase.set(Phase::failed("no network"));
    goTo(Step::PermissionsStep);
    EXPECT_TRUE(controller.canGoOn()); // it is a gate on its own step alone
    EXPECT_EQ(controller.hint(), "");
    goTo(Step::DownloadStep);
    EXPECT_TRUE(downloader.phase.get() == Phase::Downloading);
}

TEST_F(Onboarding, failedDownload_isTriedAgainWhenTheWizardIsOpenedAgain) {
    open();
    downloader.phase.set(Phase::failed("no network"));
    close();
    open();
    EXPECT_EQ(controller.step.get(), Step::WelcomeStep);
    EXPECT_TRUE(downloader.phase.get() == Phase::Downloading);
}

TEST_F(Onboarding, everythingGranted_goesOnWithoutAQuestion) {
    open();
    goTo(Step::PermissionsStep);
    controller.pressPrimary();
    EXPECT_FALSE(controller.asksToSkipPermissions.get());
    EXPECT_EQ(controller.step.get(), Step::DownloadStep);
}

TEST_F(Onboarding, missingPermission_isAskedAboutBeforeGoingOn) {
    for (const bool microphoneMissing : {true, false}) {
        permission.current =
            microphoneMissing ? AuthorizationStatus::Denied : AuthorizationStatus::Authorized;
        access.trusted = microphoneMissing;
        readiness.refresh();
        open();
        goTo(Step::PermissionsStep);
        controller.pressPrimary();
        EXPECT_TRUE(controller.asksToSkipPermissions.get());
        EXPECT_EQ(controller.step.get(), Step::PermissionsStep);
        controller.dismissQuestion();
        EXPECT_FALSE(controller.asksToSkipPermissions.get());
        EXPECT_EQ(controller.step.get(), Step::PermissionsStep);
        controller.pressPrimary();
        controller.skipPermissions();
        EXPECT_FALSE(controller.asksToSkipPermissions.get());
        EXPECT_EQ(controller.step.get(), Step::DownloadStep);
        controller.back();
    }
}

TEST_F(Onboarding, questionsSettings_areThoseOfTheFirstMissingGrant) {
    permission.current = AuthorizationStatus::Denied;
    access.trusted = false;
    readiness.refresh();
    open();
    goTo(Step::PermissionsStep);
    controller.pressPrimary();
    controller.openSettingsInstead();
    EXPECT_FALSE(controller.asksToSkipPermissions.get());
    EXPECT_EQ(settingsPanels.opened, std::vector{SettingsPanels::Panel::Accessibility});
    access.trusted = true;
    readiness.refresh();
    controller.pressPrimary();
    controller.openSettingsInstead();
    EXPECT_EQ(settingsPanels.opened.back(), SettingsPanels::Panel::Microphone);
    EXPECT_EQ(controller.step.get(), Step::PermissionsStep);
}

TEST_F(Onboarding, desktopWithoutSettings_givesAdviceInstead) {
    QString advice;
    controller.onAdvice = [&](const QString& text) { advice = text; };
    settingsPanels.hasPanels = false;
    controller.openMicrophoneSettings();
    EXPECT_EQ(advice, "Plug in a microphone, or allow one in this desktop's sound settings");
}

TEST_F(Onboarding, grants_areMirroredAndToldOnlyWhenTheyChange) {
    int told = 0;
    const auto watching = controller.micStatus.observe([&](AuthorizationStatus) { ++told; });
    EXPECT_EQ(controller.micStatus.get(), AuthorizationStatus::Authorized);
    EXPECT_TRUE(controller.axTrusted.get());
    EXPECT_TRUE(controller.inputMonitoringGranted.get());
    readiness.micStatus.set(AuthorizationStatus::Authorized);
    EXPECT_EQ(told, 0);
    permission.change(AuthorizationStatus::Denied);
    EXPECT_EQ(controller.micStatus.get(), AuthorizationStatus::Denied);
    EXPECT_EQ(told, 1);
    access.trusted = false;
    access.inputMonitoring = false;
    readiness.refresh();
    EXPECT_FALSE(controller.axTrusted.get());
    EXPECT_FALSE(controller.inputMonitoringGranted.get());
}

TEST_F(Onboarding, microphoneRequest_isReadAgainAndBringsTheWindowBackTwice) {
    permission.current = AuthorizationStatus::NotDetermined;
    readiness.refresh();
    open();
    EXPECT_EQ(toFront, 1);
    controller.requestMicrophone();
    EXPECT_EQ(controller.micStatus.get(), AuthorizationStatus::NotDetermined);
    actor.settle();
    EXPECT_EQ(controller.micStatus.get(), AuthorizationStatus::Authorized);
    EXPECT_EQ(toFront, 2);
    actor.advance(seconds(0.349));
    EXPECT_EQ(toFront, 2);
    actor.advance(seconds(0.001));
    EXPECT_EQ(toFront, 3);
}

TEST_F(Onboarding, finishedDownload_kicksTheWarmup) {
    open();
    EXPECT_EQ(warmup.kicks, 0);
    finishDownload();
    EXPECT_EQ(warmup.kicks, 1);
}

TEST_F(Onboarding, warmup_isMirrored) {
    EXPECT_FALSE(controller.didWhisperWarmup.get());
    warmup.didWhisperWarmup.set(true);
    EXPECT_TRUE(controller.didWhisperWarmup.get());
}

TEST_F(Onboarding, finish_isRememberedAndClosesTheWindow) {
    open();
    finishDownload();
    goTo(Step::DemoStep);
    EXPECT_TRUE(controller.captureHotkey.get());
    controller.pressPrimary();
    actor.settle();
    EXPECT_TRUE(settings.hasOnboarded.get());
    EXPECT_FALSE(controller.captureHotkey.get());
    EXPECT_EQ(shown, nullptr);
    files.remove(models.modelMainURL);
    EXPECT_TRUE(settings.hasOnboarded.get());
}

TEST_F(Onboarding, finish_assignsAgainWhatWasDoneBefore) {
    settings.hasOnboarded.set(true);
    int told = 0;
    const auto watching = settings.hasOnboarded.observe([&](bool) { ++told; });
    open();
    finishDownload();
    goTo(Step::DemoStep);
    controller.pressPrimary();
    EXPECT_EQ(told, 1); // so that the program goes back to being an agent
}

TEST_F(Onboarding, closedAtAnyStep_isNotFinishedAndOpensThereAgain) {
    open();
    finishDownload();
    for (int step = 0; step < OnboardingController::stepCount; ++step) {
        goTo(step);
        close();
        EXPECT_EQ(shown, nullptr);
        EXPECT_FALSE(settings.hasOnboarded.get());
        EXPECT_FALSE(controller.captureHotkey.get());
        open();
        EXPECT_EQ(controller.step.get(), step);
        EXPECT_EQ(controller.captureHotkey.get(), step == Step::DemoStep);
    }
}

TEST_F(Onboarding, openedWithoutTheModelThatWasThere_goesBackToItsDownload) {
    open();
    finishDownload();
    goTo(Step::DemoStep);
    controller.pressPrimary();
    actor.settle();
    files.remove(models.modelMainURL);
    open();
    EXPECT_EQ(controller.step.get(), Step::DownloadStep);
    EXPECT_FALSE(controller.captureHotkey.get());
}

TEST_F(Onboarding, question_goesWithTheWindow) {
    permission.current = AuthorizationStatus::Denied;
    readiness.refresh();
    open();
    goTo(Step::PermissionsStep);
    controller.pressPrimary();
    close();
    open();
    EXPECT_FALSE(controller.asksToSkipPermissions.get());
}

} // namespace
