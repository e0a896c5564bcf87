// SPDX-License-Identifier: MIT
// What a dictation has the recogniser do while the user still speaks, and that nobody notices.
#include "CoreTest.h"
#include "core/Agent.h"
#include "models/ModelStore.h"

using namespace talvera;
using namespace talvera::test;

namespace {

class EarlyRun : public CoreTest {
protected:
    /// Holds the key so that the recording goes on.
    void record(double duration = 1.0) {
        press();
        advance(0.6 + duration);
        ASSERT_EQ(state(), State::Recording);
    }
    void letGo() {
        release();
        world.actor.settle();
    }

    /// The microphone hears so many loud seconds now.
    void say(double duration) {
        world.microphone.deliver(
            std::vector<std::int16_t>(static_cast<std::size_t>(duration * 16000), std::int16_t{5000}));
        world.actor.settle();
    }

    QStringList argumentsOf(std::size_t preparation) const {
        return world.tool.preparedRequests().at(preparation).arguments;
    }
    /// The dictation's runs, without the warm-up's.
    std::vector<ToolRequest> runs() const {
        auto runs = world.tool.requests();
        std::erase_if(runs, [](const ToolRequest& run) { return !isOfADictation(run.wav); });
        return runs;
    }
    /// The texts that have come, typed or pasted.
    QStringList texts() const {
        auto texts = story({"type", "paste"});
        for (auto& text : texts)
            text = text.section(' ', 1);
        return texts;
    }
    void expectPlainRun() {
        EXPECT_EQ(world.tool.prepared(), 0);
        runToRest();
        ASSERT_EQ(runs().size(), 1U);
        EXPECT_FALSE(runs()[0].wasPrepared);
        EXPECT_EQ(texts(), QStringList("hello world"));
    }
};

TEST_F(EarlyRun, recording_preparesTheRunOfAShortClip) {
    launch();
    record();
    EXPECT_EQ(world.tool.prepared(), 1);
    EXPECT_EQ(world.disk.readAheads(), QStringList(world.agent().models.modelMainURL));
    letGo();
    runToRest();
    ASSERT_EQ(runs().size(), 1U);
    EXPECT_TRUE(runs()[0].wasPrepared);
    EXPECT_EQ(runs()[0].process.arguments, argumentsOf(0));
    EXPECT_TRUE(argumentsOf(0).contains("-nf"));
    EXPECT_EQ(texts(), QStringList("hello world"));
    EXPECT_EQ(world.tool.prepared(), 0);
}

TEST_F(EarlyRun, pressThatDoesNotRecord_preparesNothing) {
    launch();
    press();
    advance(0.59);
    EXPECT_TRUE(world.tool.preparedRequests().empty());
    letGo();
    world.microphone.startFailure = PlatformError("AudioEngine", 5, "broken");
    hold(2);
    runToRest();
    EXPECT_TRUE(world.tool.preparedRequests().empty());
    EXPECT_TRUE(world.disk.readAheads().isEmpty());
}

TEST_F(EarlyRun, discardedRecording_endsItAtOnce) {
    launch();
    hear(0.1);
    record();
    letGo();
    EXPECT_EQ(world.tool.preparedRequests().size(), 1U);
    EXPECT_EQ(world.tool.prepared(), 0);
    runToRest();
    EXPECT_TRUE(runs().empty());
}

TEST_F(EarlyRun, recordingThatCannotBeSaved_endsItAtOnce) {
    launch();
    world.recordingsFail = true;
    record();
    letGo();
    EXPECT_EQ(world.tool.prepared(), 0);
    world.recordingsFail = false;
    runToRest();
}

TEST_F(EarlyRun, endOfTheProgram_endsIt) {
    launch();
    record();
    world.agent().stop();
    EXPECT_EQ(world.tool.prepared(), 0);
    launched = false; // it doesn't come to rest any more
}

TEST_F(EarlyRun, recordingOfSixSeconds_exchangesItForALongerOne) {
    launch();
    hear(0);
    record();
    say(5.9);
    EXPECT_EQ(world.tool.preparedRequests().size(), 1U);
    say(0.1);
    ASSERT_EQ(world.tool.preparedRequests().size(), 2U);
    EXPECT_FALSE(argumentsOf(1).contains("-nf"));
    say(10);
    EXPECT_EQ(world.tool.preparedRequests().size(), 2U);
    EXPECT_EQ(world.tool.mostPrepared(), 1);
    letGo();
    runToRest();
    ASSERT_EQ(runs().size(), 1U);
    EXPECT_TRUE(runs()[0].wasPrepared);
    EXPECT_EQ(runs()[0].process.arguments, argumentsOf(1));
}

TEST_F(EarlyRun, recordingThatIsLongerThanItSeemed_takesARunOfItsOwn) {
    launch();
    hear(7); // all of it comes with the release
    record();
    letGo();
    expectPlainRun();
}

TEST_F(EarlyRun, settingsThatChangeMeanwhile_endIt) {
    launch();
    record();
    world.settings.sourceLanguageCode.set("de");
    letGo();
    expectPlainRun();
    EXPECT_EQ(runs()[0].language, "de");
}

TEST_F(EarlyRun, translationThatIsAskedForMeanwhile_endsIt) {
    launch();
    record();
    world.settings.targetLanguageCode.set("en");
    letGo();
    expectPlainRun();
    EXPECT_TRUE(runs()[0].translates);
}

TEST_F(EarlyRun, settingsThatChangeAndChangeBack_areNoMatter) {
    launch();
    record();
    world.settings.sourceLanguageCode.set("de");
    world.settings.sourceLanguageCode.set("auto");
    letGo();
    runToRest();
    EXPECT_TRUE(runs().at(0).wasPrepared);
}

TEST_F(EarlyRun, directTranslation_isPreparedAsSuch) {
    world.settings.targetLanguageCode.set("en");
    launch();
    record();
    letGo();
    runToRest();
    ASSERT_EQ(runs().size(), 1U);
    EXPECT_TRUE(runs()[0].wasPrepared);
    EXPECT_TRUE(runs()[0].translates);
}

TEST_F(EarlyRun, modelThatIsReplacedMeanwhile_endsIt) {
    launch();
    record();
    world.disk.write(world.agent().models.modelMainURL, SimulatedMachine::wholeModel);
    letGo();
    expectPlainRun();
}

TEST_F(EarlyRun, directoryThatIsReplacedMeanwhile_endsIt) {
    launch();
    record();
    world.loseTemporaryDirectory(); // and gets another one
    world.actor.settle();
    letGo();
    expectPlainRun();
}

TEST_F(EarlyRun, modelThatIsGoneMeanwhile_failsAsEver) {
    launch();
    record();
    world.setModelReady(false);
    letGo();
    runToRest();
    EXPECT_TRUE(runs().empty());
    EXPECT_EQ(world.tool.prepared(), 0);
    EXPECT_EQ(story({"menu"}).last(), "menu idle");
    EXPECT_TRUE(story({"menu"}).contains("menu error"));
}

TEST_F(EarlyRun, toolThatIsKilledWhileItWaits_isStartedAgain) {
    launch();
    record();
    world.tool.killPrepared();
    letGo();
    expectPlainRun();
}

TEST_F(EarlyRun, toolThatFailsOverTheRecording_isNotStartedAgain) {
    launch();
    recognise({failure(), text("never heard")});
    record();
    letGo();
    runToRest();
    EXPECT_EQ(runs().size(), 1U);
    EXPECT_EQ(texts(), QStringList());
}

TEST_F(EarlyRun, toolThatCannotWait_isStartedAfterTheRelease) {
    world.tool.knowsHowToWait = false;
    launch();
    record();
    letGo();
    expectPlainRun();
}

TEST_F(EarlyRun, minuteOfSpeechForAToolThatCannotWait_isRecognisedAfterTheRelease) {
    world.tool.knowsHowToWait = false;
    launch();
    hear(0);
    recognise({text("one two three"), text("three four five"), text("five six")});
    record();
    say(60);
    advance(5);
    EXPECT_TRUE(runs().empty());
    letGo();
    runToRest();
    EXPECT_EQ(runs().size(), 3U);
    for (const auto& run : runs())
        EXPECT_FALSE(run.wasPrepared);
    EXPECT_EQ(texts().value(0), "one two three four five six");
}

TEST_F(EarlyRun, memoryThatIsShort_isLeftToOtherPrograms) {
    const auto needed = 2 * SimulatedMachine::wholeModel.size();
    launch();
    world.tool.freeMemory = needed - 1;
    record();
    letGo();
    expectPlainRun();
    world.tool.freeMemory = needed;
    record();
    EXPECT_EQ(world.tool.prepared(), 1);
    letGo();
    runToRest();
    EXPECT_TRUE(runs().back().wasPrepared);
}

TEST_F(EarlyRun, secondPass_isAPlainRun) {
    world.settings.sourceLanguageCode.set("en");
    world.settings.targetLanguageCode.set("en");
    launch();
    recognise({text("first"), text("second")});
    record();
    letGo();
    runToRest();
    ASSERT_FALSE(runs().empty());
    EXPECT_TRUE(runs()[0].wasPrepared);
    for (std::size_t run = 1; run < runs().size(); ++run)
        EXPECT_FALSE(runs()[run].wasPrepared);
    EXPECT_EQ(world.tool.preparedRequests().size(), 1U);
}

TEST_F(EarlyRun, pressDuringTheRecognition_preparesNothing) {
    launch();
    record();
    letGo();
    hold(0.7);
    EXPECT_EQ(world.tool.preparedRequests().size(), 1U);
    runToRest();
}

TEST_F(EarlyRun, dictationsInARow_haveOneEach) {
    launch();
    for (int dictation = 0; dictation < 3; ++dictation)
        dictate();
    EXPECT_EQ(world.tool.preparedRequests().size(), 3U);
    EXPECT_EQ(world.tool.mostPrepared(), 1);
    for (const auto& run : runs())
        EXPECT_TRUE(run.wasPrepared);
}

TEST_F(EarlyRun, minuteOfSpeech_isMostlyRecognisedWhenTheKeyComesUp) {
    launch();
    hear(0);
    recognise({text("one two three"), text("three four five"), text("five six")});
    record();
    say(29);
    advance(2);
    ASSERT_EQ(runs().size(), 1U) << "the first chunk, while the key is down";
    EXPECT_TRUE(runs()[0].wav.endsWith("-chunk0.wav"));
    say(20);
    advance(2);
    ASSERT_EQ(runs().size(), 2U);
    say(11);
    EXPECT_EQ(world.tool.prepared(), 1) << "the run of what is left waits";
    letGo();
    EXPECT_EQ(runs().size(), 3U);
    runToRest();
    EXPECT_EQ(texts().value(0), "one two three four five six");
    for (const auto& run : runs())
        EXPECT_TRUE(run.wasPrepared);
    EXPECT_EQ(runs()[1].prompt, "one two three");
    EXPECT_EQ(runs()[2].prompt, "three four five");
    EXPECT_EQ(world.tool.mostPrepared(), 1);
    EXPECT_EQ(world.tool.prepared(), 0);
    EXPECT_TRUE(world.chunkFiles().isEmpty());
}

TEST_F(EarlyRun, longRecordingWhoseSettingsChange_beginsAnew) {
    launch();
    hear(0);
    recognise({text("of old settings"), text("one two"), text("two three")});
    record();
    say(29);
    advance(2);
    world.settings.sourceLanguageCode.set("de");
    letGo();
    runToRest();
    ASSERT_EQ(runs().size(), 3U);
    EXPECT_FALSE(runs()[1].wasPrepared);
    EXPECT_FALSE(runs()[2].wasPrepared);
    EXPECT_EQ(texts().value(0), "one two three");
    EXPECT_EQ(world.tool.prepared(), 0);
}

TEST_F(EarlyRun, chunkThatFailsAhead_isRecognisedAfterTheRelease) {
    launch();
    hear(0);
    recognise({failure(), text("one two"), text("two three")});
    record();
    say(60);
    advance(2);
    EXPECT_EQ(runs().size(), 1U);
    say(0.5);
    EXPECT_EQ(runs().size(), 1U) << "it isn't tried again before";
    letGo();
    runToRest();
    EXPECT_EQ(texts().value(0).section(' ', 0, 2), "one two three");
    EXPECT_TRUE(world.chunkFiles().isEmpty());
}

TEST_F(EarlyRun, recordingThatIsNotSavedWhileAChunkIsUnderWay_leavesNoFile) {
    launch();
    hear(0);
    record();
    say(29);
    world.recordingsFail = true;
    letGo();
    world.recordingsFail = false;
    runToRest();
    EXPECT_EQ(world.tool.prepared(), 0);
    EXPECT_TRUE(world.chunkFiles().isEmpty());
    EXPECT_EQ(texts(), QStringList());
}

} // namespace
