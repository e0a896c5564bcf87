// SPDX-License-Identifier: MIT
#include "speech/ChunkedTranscription.h"

#include "FakeAudioFileReader.h"
#include "FakeChildProcess.h"
#include "FakeFileSystem.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "speech/WavWriter.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

const auto wav = QStringLiteral("/tmp/talvera-1.wav");
const auto binary = QStringLiteral("/app/whisper-cli");
const auto model = QStringLiteral("/app/m.bin");

class ChunkedTranscriptionTest : public testing::Test {
protected:
    ChunkedTranscriptionTest() {
        files.addExecutable(binary);
        files.write(model, "model");
    }

    void record(double seconds, int more = 0) {
        const std::vector<std::int16_t> samples(static_cast<std::size_t>(seconds * 16000 + more), 5000);
        writeWAV(files, samples, 16000, wav);
    }

    static ToolRun answer(const QByteArray& text, Duration duration = 1s) {
        ToolRun run;
        run.text = text;
        run.duration = duration;
        return run;
    }

    static ToolRun failure(int status) {
        ToolRun run;
        run.status = status;
        return run;
    }

    void run(WhisperMode mode = WhisperMode::Transcribe) {
        actor.start([this, mode]() -> Task<void> {
            try {
                text = co_await chunked.transcribeChunked(runner, wav, mode, language, 25.0, 2.0, 28.0);
            } catch (const WhisperError& error) {
                thrown = error;
            }
        });
        ASSERT_TRUE(actor.runToRest(1h));
        ASSERT_TRUE(text || thrown);
    }

    void expectNoChunkFiles() { EXPECT_EQ(files.count("talvera-1-chunk"), 0); }

    SimulatedMainActor actor;
    SimulatedBackgroundPool background{actor};
    FakeFileSystem files;
    FakeAudioFileReader reader{files};
    FakeChildProcess tool{actor, files};
    RecordingConsole console;
    WhisperRunner runner{tool, files, "/tmp", binary, model};
    ChunkedTranscription chunked{actor, background, files, reader, console};
    QString language = "en";
    std::optional<QString> text;
    std::optional<WhisperError> thrown;
};

TEST_F(ChunkedTranscriptionTest, twentyEightSeconds_takeOneSilentRunOfTheWholeRecording) {
    record(28.0);
    tool.setRuns({answer("hello")});
    run();
    EXPECT_EQ(text, "hello");
    ASSERT_EQ(tool.requests().size(), 1U);
    EXPECT_EQ(tool.requests()[0].wav, wav);
    EXPECT_EQ(files.writes(), 4); // the program, the model, the recording, the tool's text
    EXPECT_TRUE(console.printed().isEmpty());
    EXPECT_TRUE(files.exists(wav));
}

TEST_F(ChunkedTranscriptionTest, longRecording_isDecodedInOrderAndMerged) {
    record(48.5);
    tool.setRuns({answer("one two three"), answer("Two, three four"), answer("four five")});
    run();
    EXPECT_EQ(text, "one two three four five");
    ASSERT_EQ(tool.requests().size(), 3U);
    EXPECT_EQ(tool.requests()[0].wav, "/tmp/talvera-1-chunk0.wav");
    EXPECT_EQ(tool.requests()[1].wav, "/tmp/talvera-1-chunk1.wav");
    EXPECT_EQ(tool.requests()[2].wav, "/tmp/talvera-1-chunk2.wav");
    expectNoChunkFiles();
    EXPECT_TRUE(files.exists(wav));
}

TEST_F(ChunkedTranscriptionTest, eachChunk_isPromptedWithTheTextBeforeIt) {
    record(48.5);
    tool.setRuns({answer("one two three"), answer(""), answer("four five")});
    language = "de";
    run();
    ASSERT_EQ(tool.requests().size(), 3U);
    const auto usual =
        QStringLiteral("Sprache mit vollständiger Zeichensetzung: Kommas, Punkte, Fragezeichen und "
                       "korrekter Großschreibung.");
    EXPECT_EQ(tool.requests()[0].prompt, usual);
    EXPECT_EQ(tool.requests()[1].prompt, "one two three");
    EXPECT_EQ(tool.requests()[2].prompt, usual); // the text before was empty
    EXPECT_EQ(text, "one two three four five");
}

TEST_F(ChunkedTranscriptionTest, translation_carriesItsOptionAndItsEnglishTail) {
    record(40.0);
    tool.setRuns({answer("the first part"), answer("the second")});
    language = "de";
    run(WhisperMode::TranslateToEnglish);
    ASSERT_EQ(tool.requests().size(), 2U);
    EXPECT_TRUE(tool.requests()[0].translates);
    EXPECT_TRUE(tool.requests()[1].translates);
    EXPECT_EQ(tool.requests()[1].prompt, "the first part");
}

TEST_F(ChunkedTranscriptionTest, shortLastChunk_isDecodedAsAShortClip) {
    record(28.5);
    run();
    const auto beamOf = [this](std::size_t request) {
        const auto& arguments = tool.requests().at(request).process.arguments;
        return arguments.value(arguments.indexOf("-bs") + 1);
    };
    ASSERT_EQ(tool.requests().size(), 2U);
    EXPECT_EQ(beamOf(0), "5");
    EXPECT_EQ(beamOf(1), "1");
}

TEST_F(ChunkedTranscriptionTest, timings_arePrinted) {
    record(28.5);
    tool.setRuns({answer("héllo", 1500ms), answer("world", 250ms)});
    run();
    EXPECT_EQ(console.printed(),
              (QStringList{"TALVERA_PERF chunk_transcribe 1/2 audio=25.0s decode=1.50s chars=5",
                           "TALVERA_PERF chunk_transcribe 2/2 audio=5.5s decode=0.25s chars=5",
                           "TALVERA_PERF chunked_transcribe_total stage=1.75s chunks=2 chars=11"}));
}

TEST_F(ChunkedTranscriptionTest, charactersInTimings_areWhatTheReaderCounts) {
    record(28.5);
    tool.setRuns({answer("e\xCC\x81"), answer("e\xCC\x81")});
    run(WhisperMode::TranslateToEnglish);
    EXPECT_EQ(console.printed().value(0),
              "TALVERA_PERF chunk_translate 1/2 audio=25.0s decode=1.00s chars=1");
    EXPECT_EQ(console.printed().value(2),
              "TALVERA_PERF chunked_translate_total stage=2.00s chunks=2 chars=1");
}

TEST_F(ChunkedTranscriptionTest, chunkThatFails_endsTheRunAndLeavesNoChunk) {
    record(48.5);
    tool.setRuns({answer("one"), failure(7)});
    run();
    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->status(), 7);
    EXPECT_EQ(tool.requests().size(), 2U);
    expectNoChunkFiles();
    EXPECT_TRUE(files.exists(wav));
}

TEST_F(ChunkedTranscriptionTest, singleShotThatFails_throwsAsItIs) {
    record(5.0);
    tool.setRuns({failure(7)});
    run();
    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->status(), 7);
}

TEST_F(ChunkedTranscriptionTest, recordingThatIsNoSound_fallsBackToOneRunAndSaysSo) {
    files.write(wav, QByteArray(1000, 'x'));
    tool.setRuns({answer("hello")});
    run();
    EXPECT_EQ(text, "hello");
    ASSERT_EQ(console.printed().size(), 1);
    EXPECT_TRUE(console.printed()[0].startsWith("[chunked-transcribe] split failed: "));
    EXPECT_TRUE(console.printed()[0].endsWith(" — falling back to single-shot"));
}

TEST_F(ChunkedTranscriptionTest, fullDiskAtAChunk_fallsBackToOneRun) {
    record(48.5);
    files.failWriteAfter(1, ENOSPC);
    tool.setRuns({answer("hello")});
    run(WhisperMode::TranslateToEnglish);
    EXPECT_EQ(text, "hello");
    ASSERT_EQ(tool.requests().size(), 1U);
    EXPECT_EQ(tool.requests()[0].wav, wav);
    EXPECT_TRUE(console.printed().value(0).startsWith("[chunked-translate] split failed: "));
    EXPECT_EQ(files.count("talvera-1-chunk"), 1); // nothing takes it away
}

TEST_F(ChunkedTranscriptionTest, missingRecording_failsInTheToolAfterTheFallBack) {
    run();
    ASSERT_TRUE(thrown);
    EXPECT_EQ(thrown->kind(), WhisperError::Kind::ProcessFailed);
    EXPECT_EQ(console.printed().size(), 1);
}

TEST_F(ChunkedTranscriptionTest, mainActor_isFreeWhileTheToolRuns) {
    record(28.5);
    bool duringARun = false;
    actor.startTimer(500ms, [&] { duringARun = !text; });
    run();
    EXPECT_TRUE(duringARun);
    EXPECT_GE(actor.elapsed(), 2.0);
}

} // namespace
