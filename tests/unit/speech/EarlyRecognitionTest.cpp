// SPDX-License-Identifier: MIT
#include "EarlyRecognitionFixture.h"

#include <cerrno>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

TEST_F(EarlyRecognitionTest, chunk_isRecognisedAsSoonAsNothingCanChangeIt) {
    begin();
    say(28 * second, 5000);
    actor.advance(5s);
    EXPECT_EQ(chunksAhead(), 0) << "it may still be a recording that goes to the tool whole";
    say(1, 5000);
    EXPECT_EQ(chunksAhead(), 1);
    actor.advance(5s);
    say(20 * second - 2, 5000);
    EXPECT_EQ(chunksAhead(), 1) << "the second chunk lacks a sample";
    say(1, 5000);
    EXPECT_EQ(chunksAhead(), 2);
    expectSameTexts();
}

TEST_F(EarlyRecognitionTest, silence_settlesNothing) {
    begin();
    say(10 * second, 5000);
    say(60 * second, 600);
    actor.advance(5s);
    EXPECT_EQ(chunksAhead(), 0);
    expectSameTexts();
}

TEST_F(EarlyRecognitionTest, chunkThatIsUnderWayAtTheRelease_isAwaited) {
    begin();
    say(30 * second, 5000);
    actor.advance(500ms);
    ASSERT_EQ(chunksAhead(), 1);
    recorder.stop(wav);
    const auto runsBefore = tool.requests().size();
    transcribe(chunked);
    EXPECT_EQ(tool.requests().size(), runsBefore + 1) << "what is left, and nothing twice";
}

TEST_F(EarlyRecognitionTest, chunkAhead_isToldOfAsEver) {
    begin();
    say(30 * second, 5000);
    actor.advance(5s);
    recorder.stop(wav);
    transcribe(chunked);
    ASSERT_EQ(console.printed().size(), 3);
    EXPECT_TRUE(console.printed()[0].startsWith("TALVERA_PERF chunk_transcribe 1/2 audio=25.0s decode=1.00s"))
        << console.printed()[0].toStdString();
}

TEST_F(EarlyRecognitionTest, levelAfterTheRelease_changesNothing) {
    begin();
    say(7 * second, 5000);
    ASSERT_EQ(tool.preparedRequests().size(), 2U);
    recorder.stop(wav);
    early.follow();
    EXPECT_EQ(tool.preparedRequests().size(), 2U);
    transcribe(chunked);
    EXPECT_TRUE(tool.requests().back().wasPrepared);
}

TEST_F(EarlyRecognitionTest, splitThatFails_takesARunOfTheWholeRecording) {
    begin();
    say(30 * second, 5000);
    actor.advance(500ms);
    recorder.stop(wav);
    files.failWriteAfter(0, ENOSPC);
    transcribe(chunked);
    EXPECT_EQ(tool.requests().back().wav, wav);
    EXPECT_FALSE(tool.requests().back().wasPrepared);
    EXPECT_EQ(tool.prepared(), 0);
}

TEST_F(EarlyRecognitionTest, fileOfAChunkThatSaysSomethingElse_isRecognisedAnew) {
    begin();
    say(30 * second, 5000);
    actor.advance(5s);
    ASSERT_EQ(chunksAhead(), 1);
    recorder.stop(wav);
    writeWAV(files, std::vector<std::int16_t>(30 * second, 7000), 16000, wav);
    EXPECT_TRUE(transcribe(chunked).startsWith("w7000 "));
}

TEST_F(EarlyRecognitionTest, modelThatIsReplacedMeanwhile_isTheOneThatCounts) {
    begin();
    say(30 * second, 5000);
    actor.advance(5s);
    files.write(model, "other");
    const auto runsBefore = tool.requests().size();
    expectSameTexts();
    EXPECT_EQ(tool.requests().size(), runsBefore + 4) << "both passes from the start";
}

TEST_F(EarlyRecognitionTest, nextRecording_endsWhatIsLeftOfTheOneBefore) {
    begin();
    say(30 * second, 5000);
    recorder.stop(wav);
    files.remove(wav);
    begin();
    EXPECT_EQ(tool.prepared(), 1);
    say(2 * second, 5000);
    expectSameTexts();
}

} // namespace
