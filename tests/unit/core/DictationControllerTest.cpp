// SPDX-License-Identifier: MIT
#include "CoreTest.h"
#include "shell/MenuBarController.h"
#include "shell/hud/DictationHUDController.h"

#include <cerrno>

using namespace talvera;
using namespace talvera::test;

namespace {

class Dictation : public CoreTest {};

TEST_F(Dictation, holdAndSpeak_goesFromPressToTextInOrder) {
    launch();
    dictate();
    EXPECT_EQ(world.story(),
              QStringList({"recorderStart", "menu recording", "hud listening", "sound Submarine",
                           "recorderStop 2.0", "menu transcribing", "hud transcribing",
                           "recognise transcribe auto null 2.0", "statistics 2.0 2 11 auto false false none",
                           "menu idle", "type hello world", "hud hidden"}));
    EXPECT_TRUE(world.wavFiles().isEmpty());
    EXPECT_FALSE(world.microphone.hasTap());
}

TEST_F(Dictation, hud_comesInOnceForAWholeDictation) {
    launch();
    dictate();
    EXPECT_EQ(world.windows.hudPanel()->fadeIns, 1);
}

TEST_F(Dictation, holdMode_recordsOnlyAfterTheHoldDelay) {
    launch();
    press();
    advance(0.599);
    EXPECT_TRUE(dictation().hasPendingRecordStart());
    EXPECT_TRUE(world.effects.empty());
    EXPECT_EQ(state(), State::Idle);
    advance(0.001);
    EXPECT_FALSE(dictation().hasPendingRecordStart());
    EXPECT_EQ(state(), State::Recording);
    EXPECT_EQ(hud(), HUD(HUD::Listening{world.actor.date()})); // the time counts from here
    release();
}

TEST_F(Dictation, holdModeKeyUpBeforeTheDelay_leavesNoTrace) {
    launch();
    const auto before = world.disk.writes();
    hold(0.59);
    EXPECT_FALSE(dictation().currentWav());
    EXPECT_FALSE(dictation().pressStartedAt());
    EXPECT_FALSE(dictation().hasPendingRecordStart());
    runToRest();
    EXPECT_EQ(story({"recorderStart", "menu", "hud", "sound", "wavDeleted"}), QStringList());
    EXPECT_EQ(state(), State::Idle);
    EXPECT_EQ(world.disk.writes(), before);
}

TEST_F(Dictation, holdModeWithTooLittleAudio_isDiscardedAndTheHUDStaysOnListening) {
    launch();
    hear(0.1);
    hold(0.7);
    EXPECT_EQ(state(), State::Idle);
    EXPECT_TRUE(hud().as<HUD::Listening>());
    EXPECT_TRUE(world.wavFiles().isEmpty());
    EXPECT_EQ(world.traces(), QStringList({"Press too short (held 0.7s, audio 0.1s) — discarding."}));
    runToRest();
    EXPECT_TRUE(hud().as<HUD::Listening>());
    EXPECT_FALSE(world.windows.hudPanel()->isVisible()); // nothing is recorded any more
    EXPECT_EQ(story({"statistics", "recognise"}), QStringList());
}

TEST_F(Dictation, discardedRecordingThatCannotBeDeleted_endsThePressAllTheSame) {
    launch();
    hear(0.1);
    press();
    advance(0.7);
    const auto wav = dictation().currentWav();
    ASSERT_TRUE(wav);
    world.disk.failRemovals(*wav, EACCES);
    release();
    runToRest();
    EXPECT_EQ(world.wavFiles(), QStringList({*wav}));
    EXPECT_EQ(state(), State::Idle);
    hear(2.0);
    dictate(); // the next press is one like any other
    EXPECT_EQ(story({"type"}).size(), 1);
}

TEST_F(Dictation, recordingAfterADiscardedOne_isShown) {
    launch();
    hear(0.1);
    hold(0.7);
    hear(2.0);
    press();
    advance(0.7);
    EXPECT_TRUE(world.windows.hudPanel()->isVisible());
    advance(2);
    EXPECT_TRUE(world.windows.hudPanel()->isVisible());
    release();
    runToRest();
}

TEST_F(Dictation, tapModeSecondPressTooSoon_isDiscarded) {
    useTapMode();
    launch();
    press();
    advance(0.15);
    EXPECT_EQ(state(), State::Recording);
    press();
    world.actor.settle();
    EXPECT_EQ(state(), State::Idle);
    EXPECT_EQ(world.traces(), QStringList({"Press too short (held 0.15s, audio 2s) — discarding."}));
    EXPECT_TRUE(world.wavFiles().isEmpty());
}

TEST_F(Dictation, tapMode_recordsAtOnceAndIgnoresReleases) {
    useTapMode();
    launch();
    press();
    release();
    world.actor.settle();
    EXPECT_EQ(state(), State::Recording);
    advance(3);
    release();
    world.actor.settle();
    EXPECT_EQ(state(), State::Recording);
    press();
    world.actor.settle();
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(Dictation, tapModePressWhileTranscribing_isIgnored) {
    useTapMode();
    launch();
    press();
    advance(2);
    press();
    world.actor.settle();
    ASSERT_EQ(state(), State::Transcribing);
    const auto wav = dictation().currentWav();
    const auto pressStartedAt = dictation().pressStartedAt();
    advance(0.1);
    press();
    world.actor.settle();
    EXPECT_EQ(dictation().currentWav(), wav);
    EXPECT_EQ(dictation().pressStartedAt(), pressStartedAt);
    runToRest();
    EXPECT_EQ(story({"recorderStart"}).size(), 1);
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(Dictation, holdModePressWhileTranscribing_isIgnoredWithItsRelease) {
    launch();
    hold(1);
    ASSERT_EQ(state(), State::Transcribing);
    hold(0.3);
    EXPECT_EQ(state(), State::Transcribing);
    runToRest();
    EXPECT_EQ(story({"recorderStart"}).size(), 1);
}

TEST_F(Dictation, holdModePressWhileTranscribing_startsNothingAlsoWhenItIsHeldOn) {
    launch();
    hold(1);
    advance(0.7); // the tool takes 1 s: it ends before the delay of this press would
    ASSERT_EQ(state(), State::Transcribing);
    press();
    advance(2);
    EXPECT_EQ(state(), State::Idle);
    release();
    runToRest();
    EXPECT_EQ(story({"recorderStart"}).size(), 1);
}

TEST_F(Dictation, pressSoonAfterAShortTouch_hasItsWholeDelay) {
    launch();
    hold(0.3);
    advance(0.1);
    press();
    advance(0.3); // past the end of the first one's delay
    EXPECT_EQ(state(), State::Idle);
    advance(0.299);
    EXPECT_EQ(state(), State::Idle);
    advance(0.001);
    EXPECT_EQ(state(), State::Recording);
    release();
}

TEST_F(Dictation, stateThatChangesDuringTheDelay_startsNothing) {
    launch();
    press();
    advance(0.3);
    world.agent().menuBar.state.set(State::Transcribing);
    advance(1);
    EXPECT_EQ(story({"recorderStart"}), QStringList());
    release();
    world.agent().menuBar.state.set(State::Idle);
}

TEST_F(Dictation, holdModePressDuringAnError_isIgnoredWithItsRelease) {
    launch();
    recognise({failure()});
    hold(1);
    advance(1.5);
    ASSERT_EQ(state(), State::Error);
    world.effects.clear();
    press();
    world.actor.settle();
    EXPECT_FALSE(dictation().hasPendingRecordStart());
    advance(1);
    release();
    world.actor.settle();
    EXPECT_EQ(state(), State::Error);
    EXPECT_TRUE(world.effects.empty());
}

TEST_F(Dictation, audioExactlyAtTheThreshold_isPasted) {
    launch();
    hear(15.0);
    dictate();
    EXPECT_EQ(story({"type", "paste"}), QStringList({"paste hello world"}));
}

TEST_F(Dictation, audioJustBelowTheThreshold_isTyped) {
    launch();
    hear(14.99);
    dictate();
    EXPECT_EQ(story({"type", "paste"}), QStringList({"type hello world"}));
}

TEST_F(Dictation, insertionModePaste_pastesAnyDuration) {
    world.settings.insertionMode.set(InsertionMode::Paste);
    launch();
    hear(0.5);
    dictate();
    EXPECT_EQ(story({"type", "paste"}), QStringList({"paste hello world"}));
}

TEST_F(Dictation, twoPressStartsWithinTheDelay_leaveThePressOfTheSecond) {
    launch();
    press();
    advance(0.3);
    const auto firstWav = dictation().currentWav();
    press();
    world.actor.settle();
    EXPECT_TRUE(dictation().hasPendingRecordStart());
    EXPECT_NE(dictation().currentWav(), firstWav);
    EXPECT_EQ(dictation().pressStartedAt(), world.actor.now());
    advance(0.5); // past the end of the first one's delay
    EXPECT_EQ(state(), State::Idle);
    advance(0.1);
    EXPECT_EQ(state(), State::Recording);
    EXPECT_EQ(story({"recorderStart"}).size(), 1);
    release();
}

TEST_F(Dictation, recorderThatDoesNotStart_tellsTheUserAndTheReleaseDoesNothing) {
    launch();
    world.microphone.startFailure = PlatformError(AudioEngineFailure::NoInput, "no input");
    press();
    advance(0.6);
    EXPECT_EQ(world.story(), QStringList({"menu error", "hud notice Microphone unavailable warn 3.0"}));
    EXPECT_EQ(world.agent().menuBar.lastErrorMessage.get(), "Microphone unavailable");
    EXPECT_TRUE(world.traces().constFirst().startsWith("Recorder start failed: "));
    EXPECT_FALSE(dictation().currentWav());
    EXPECT_FALSE(dictation().pressStartedAt());
    EXPECT_FALSE(dictation().focusSnapshot());
    EXPECT_FALSE(dictation().hasPendingRecordStart());
    world.effects.clear();
    release();
    world.actor.settle();
    EXPECT_TRUE(world.effects.empty());
    advance(4);
    EXPECT_EQ(story({"menu", "hud"}), QStringList({"hud hidden", "menu idle"}));
}

TEST_F(Dictation, recorderThatWorksAgain_recordsAfterAFailedStart) {
    launch();
    world.microphone.startFailure = PlatformError(AudioEngineFailure::Refused, "refused");
    hold(1);
    world.microphone.startFailure.reset();
    runToRest();
    dictate();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(Dictation, recordingThatCannotBeSaved_isToldByANotificationWhereNoItemIsSeen) {
    launch();
    world.recordingsFail = true;
    hold(1);
    EXPECT_TRUE(world.notifier.shown.isEmpty()); // the item tells it
    runToRest();
    world.statusItem.hasTray = false;
    hold(1);
    EXPECT_EQ(world.notifier.shown, QStringList("Couldn't save recording|"));
}

TEST_F(Dictation, recordingThatCannotBeSaved_showsAnErrorAndLeavesTheHUD) {
    launch();
    world.recordingsFail = true;
    hold(1);
    EXPECT_EQ(state(), State::Error);
    EXPECT_EQ(world.agent().menuBar.lastErrorMessage.get(), "Couldn't save recording");
    EXPECT_TRUE(dictation().currentWav());
    EXPECT_TRUE(world.traces().constFirst().startsWith("Recorder stop failed: "));
    advance(0.5); // longer than any fade
    EXPECT_TRUE(hud().as<HUD::Listening>());
    advance(3.4);
    EXPECT_FALSE(world.windows.hudPanel()->isVisible());
    EXPECT_EQ(state(), State::Error);
    advance(0.1);
    EXPECT_EQ(state(), State::Idle);
    EXPECT_TRUE(world.wavFiles().isEmpty());
    world.recordingsFail = false;
    dictate();
    EXPECT_EQ(story({"type"}), QStringList({"type hello world"}));
}

TEST_F(Dictation, settingsChangedDuringRecognition_doNotTouchTheDictationInFlight) {
    launch();
    hold(1);
    world.settings.targetLanguageCode.set("en");
    world.settings.sourceLanguageCode.set("de");
    world.settings.insertionMode.set(InsertionMode::Paste);
    runToRest();
    EXPECT_EQ(story({"recognise", "type", "paste"}),
              QStringList({"recognise transcribe auto null 2.0", "type hello world"}));
}

TEST_F(Dictation, startSoundOff_isSilent) {
    world.settings.startSoundName.set("Off");
    launch();
    hold(1);
    EXPECT_EQ(story({"sound"}), QStringList());
}

TEST_F(Dictation, startSoundOfANameThatWeDontKnow_isAskedForAsItIsStored) {
    for (const auto* name : {"off", "Ding"}) {
        world.settings.startSoundName.set(name);
        if (!launched)
            launch();
        world.effects.clear();
        dictate();
        EXPECT_EQ(story({"sound"}), QStringList({QStringLiteral("sound ") + name}));
    }
}

TEST_F(Dictation, focusSnapshot_belongsToTheMomentAtWhichRecordingBegan) {
    launch();
    press();
    advance(0.3);
    world.workspace.runInFront({200, QStringLiteral("org.example.mail"), QStringLiteral("Mail")});
    advance(0.3);
    ASSERT_TRUE(dictation().focusSnapshot());
    EXPECT_EQ(dictation().focusSnapshot()->pid, 200);
    release();
    runToRest();
    EXPECT_EQ(story({"activate"}), QStringList());
}

TEST_F(Dictation, level_reachesTheHUDWhileRecording) {
    launch();
    press();
    advance(0.6);
    world.microphone.deliver(std::vector<std::int16_t>(1600, 8000));
    world.actor.settle();
    EXPECT_GT(world.agent().hud.stateHolder().level.get(), 0.0F);
    release();
}

TEST_F(Dictation, trace_tellsWhatTheRequestWasFrozenWith) {
    world.settings.targetLanguageCode.set("de");
    world.settings.sourceLanguageCode.set("en");
    world.settings.aiCleanupEnabled.set(true);
    launch();
    hold(1);
    EXPECT_EQ(world.traces().constFirst(),
              "[cfg] target=de srcLang=en cleanup=off aiAvail=false aiSrcOK=false useAI=false audio=2.00s");
}

TEST_F(Dictation, traceWithAutomaticSource_countsItAsSupported) {
    launch();
    hear(2.345);
    hold(1);
    EXPECT_EQ(world.traces().constFirst(),
              "[cfg] target=off srcLang=auto cleanup=off aiAvail=false aiSrcOK=true useAI=false audio=2.35s");
}

TEST_F(Dictation, sourceThatTheLanguageModelDoesNotKnow_isNotTranslatedByIt) {
    world.settings.targetLanguageCode.set("de");
    world.settings.sourceLanguageCode.set("ru");
    world.languageModel.reason.reset();
    world.languageModel.languages = {"en", "de"};
    launch();
    hold(1);
    EXPECT_EQ(world.traces().constFirst(),
              "[cfg] target=de srcLang=ru cleanup=off aiAvail=true aiSrcOK=false useAI=false audio=2.00s");
}

TEST_F(Dictation, modeSwitchedToTapDuringAHold_theNextPressEndsTheRecording) {
    launch();
    press();
    advance(1);
    useTapMode();
    release();
    advance(1);
    EXPECT_EQ(state(), State::Recording);
    press();
    world.actor.settle();
    EXPECT_EQ(state(), State::Transcribing);
}

TEST_F(Dictation, agentGoneWhileAPressWaits_startsNothing) {
    launch();
    press();
    advance(0.3);
    world.agent().stop();
    runToRest();
    EXPECT_TRUE(world.effects.empty());
}

} // namespace
