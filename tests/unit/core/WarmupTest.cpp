// SPDX-License-Identifier: MIT
#include "core/Warmup.h"

#include "CoreTest.h"
#include "models/ModelStore.h"
#include "shell/onboarding/OnboardingController.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class WarmupAtLaunch : public CoreTest {
protected:
    /// What it has printed.
    QStringList lines() const { return world.console.printed().filter("[warmup] "); }
    bool isWarm() { return world.agent().onboarding.didWhisperWarmup.get(); }
    /// Without a third of a second of silence, nothing is left of it.
    bool hasLeftFiles() const { return world.disk.count("talvera-warmup") != 0; }
    /// The model comes by another way than the download that may be under way, and the wizard sees it.
    void download() {
        for (const auto& transfer : world.network.transfers)
            transfer->fail(DownloadFailure::ConnectionLost);
        runToRest();
        world.setModelReady(true);
        auto& wizard = world.agent().onboarding;
        while (wizard.step.get() < OnboardingController::DownloadStep)
            wizard.advance();
        runToRest();
    }
};

TEST_F(WarmupAtLaunch, bothModelsThere_areLoadedOneAfterTheOther) {
    world.languageModel.reason.reset();
    world.tool.warmup.duration = seconds(1.5);
    world.languageModel.warmupAnswer.snapshots = {{seconds(0.25), "o"}, {seconds(0.5), "ok"}};
    launch();
    runToRest();
    EXPECT_EQ(lines(), QStringList({"[warmup] primeAll: scheduling whisper + AI tasks",
                                    "[warmup] primeWhisper: enter (ModelStore.isReady=true)",
                                    "[warmup] whisper ready in 1.50s",
                                    "[warmup] primeAppleIntelligence: enter (AICleanup.isAvailable=true)",
                                    "[warmup] Apple Intelligence ready in 0.75s"}));
    EXPECT_TRUE(isWarm());
}

TEST_F(WarmupAtLaunch, recogniser_hearsAThirdOfASecondOfSilenceAndGivesWayToEverything) {
    launch();
    runToRest();
    ASSERT_EQ(world.tool.requests().size(), 1U);
    const auto& run = world.tool.requests()[0];
    EXPECT_EQ(run.process.priority, ChildProcessRequest::Priority::Low);
    EXPECT_EQ(run.language, "en");
    EXPECT_FALSE(run.translates);
    EXPECT_DOUBLE_EQ(run.audioSeconds, 5333 / 16000.0);
    EXPECT_FALSE(hasLeftFiles());
}

TEST_F(WarmupAtLaunch, dictation_givesWayToNothing) {
    launch();
    dictate();
    ASSERT_EQ(world.tool.requests().size(), 2U);
    EXPECT_EQ(world.tool.requests()[1].process.priority, ChildProcessRequest::Priority::Normal);
}

TEST_F(WarmupAtLaunch, languageModel_isAskedForTwoLettersInASessionOfItsOwn) {
    world.languageModel.reason.reset();
    launch();
    runToRest();
    ASSERT_EQ(world.languageModel.requests.size(), 1U);
    EXPECT_EQ(world.languageModel.requests[0].instructions, "Reply with 'ok'.");
    EXPECT_EQ(world.languageModel.requests[0].prompt, "ok");
    EXPECT_EQ(world.languageModel.sessions, 0);
}

TEST_F(WarmupAtLaunch, pressDuringIt_isNotMadeToWait) {
    world.tool.warmup.duration = seconds(30);
    launch();
    hold(2);
    advance(1);
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
    EXPECT_FALSE(isWarm());
    runToRest();
    EXPECT_TRUE(isWarm());
}

TEST_F(WarmupAtLaunch, modelMissing_isDeferredAndTheDownloadWarmsItUpOnce) {
    world.setModelReady(false);
    launch();
    EXPECT_EQ(lines(),
              QStringList({"[warmup] primeAll: scheduling whisper + AI tasks",
                           "[warmup] kickWhisperOnce: model not ready, defer (downloader will re-kick)",
                           "[warmup] primeAppleIntelligence: enter (AICleanup.isAvailable=false)"}));
    download();
    EXPECT_EQ(lines().sliced(3), QStringList({"[warmup] primeWhisper: enter (ModelStore.isReady=true)",
                                              "[warmup] whisper ready in 0.00s"}));
    EXPECT_TRUE(isWarm());
}

TEST_F(WarmupAtLaunch, secondKickWhileItRuns_isSkipped) {
    world.tool.warmup.duration = seconds(10);
    launch();
    advance(1);
    download();
    EXPECT_EQ(lines().count("[warmup] kickWhisperOnce: already kicked, skip"), 1);
    EXPECT_EQ(world.tool.requests().size(), 1U);
}

TEST_F(WarmupAtLaunch, toolThatFails_isPrintedAndNotTriedAgain) {
    world.tool.warmup = failure(3);
    launch();
    runToRest();
    EXPECT_EQ(lines().filter("[warmup] whisper failed: ").size(), 1);
    EXPECT_FALSE(isWarm());
    EXPECT_FALSE(hasLeftFiles());
    download();
    EXPECT_EQ(world.tool.requests().size(), 1U);
}

TEST_F(WarmupAtLaunch, diskThatTakesNoSilence_isPrinted) {
    world.disk.failWriteAfter(0, ENOSPC);
    launch();
    runToRest();
    EXPECT_EQ(lines().filter("[warmup] whisper failed: ").size(), 1);
    EXPECT_TRUE(world.tool.requests().empty());
    EXPECT_FALSE(hasLeftFiles());
}

TEST_F(WarmupAtLaunch, toolThatFails_keepsTheLanguageModelFromNothing) {
    world.languageModel.reason.reset();
    world.tool.warmup = failure();
    launch();
    runToRest();
    EXPECT_EQ(lines().constLast().left(37), "[warmup] Apple Intelligence ready in ");
}

TEST_F(WarmupAtLaunch, languageModelOff_isNotAsked) {
    launch();
    runToRest();
    EXPECT_TRUE(world.languageModel.requests.empty());
    EXPECT_EQ(lines().constLast(), "[warmup] primeAppleIntelligence: enter (AICleanup.isAvailable=false)");
}

TEST_F(WarmupAtLaunch, languageModelThatFails_isPrinted) {
    world.languageModel.reason.reset();
    world.languageModel.warmupAnswer.failure.emplace("assetsUnavailable", "it doesn't come up");
    launch();
    runToRest();
    EXPECT_EQ(lines().constLast(),
              "[warmup] Apple Intelligence failed: assetsUnavailable: it doesn't come up");
    dictate();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(WarmupAtLaunch, languageModelThatComesLater_isNotWarmedUp) {
    launch();
    world.languageModel.reason.reset();
    world.languageModel.tellChange();
    runToRest();
    EXPECT_TRUE(world.languageModel.requests.empty());
}

} // namespace
