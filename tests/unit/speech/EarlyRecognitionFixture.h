// SPDX-License-Identifier: MIT
#pragma once

#include "FakeAudioConverter.h"
#include "FakeAudioEngine.h"
#include "FakeAudioFileReader.h"
#include "FakeChildProcess.h"
#include "FakeFileSystem.h"
#include "PrintQt.h"
#include "RecordingConsole.h"
#include "SimulatedMainActor.h"
#include "speech/AudioRecorder.h"
#include "speech/ChunkedTranscription.h"
#include "speech/EarlyRecognition.h"
#include "speech/WavWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace talvera::test {

/// A recorder and a recogniser, and between them what is done ahead. Each recording can be recognised with
/// that and without.
class EarlyRecognitionTest : public testing::Test {
protected:
    explicit EarlyRecognitionTest(const AudioChunker::Lengths& chunkLengths = AudioChunker::usualLengths)
        : lengths(chunkLengths) {
        files.addExecutable(binary);
        files.write(model, "model");
        tool.hears = [](const ToolRequest& run, const QByteArray& recording) {
            return heard(run, recording);
        };
        recorder.setOnLevel([this](float) { early.follow(); });
    }

    /// A word for each stretch of the sound, by its loudness, and one for the prompt: no two recordings, and
    /// no two prompts, give the same text.
    static QByteArray heard(const ToolRequest& run, const QByteArray& recording) {
        constexpr qsizetype stretch = 2 * 640; // bytes
        QByteArray text;
        for (qsizetype at = wavHeaderBytes; at + 1 < recording.size(); at += stretch) {
            std::int16_t sample = 0;
            std::memcpy(&sample, recording.constData() + at, sizeof sample);
            text += "w" + QByteArray::number(sample) + ' ';
        }
        return text + "p" + QByteArray::number(qHash(run.prompt.value_or(QString()))) + ' ' +
               run.language.toUtf8() + QByteArray::number(run.process.arguments.size());
    }

    void begin(const QString& language = "en") {
        wav = QStringLiteral("/tmp/talvera-%1.wav").arg(++recordings);
        recorder.start();
        early.begin({wav, WhisperMode::Transcribe, language});
    }

    void say(std::size_t samples, std::int16_t sample) {
        engine.deliver(std::vector<std::int16_t>(samples, sample));
        actor.settle();
    }

    QString transcribe(ChunkedTranscription& transcription, const QString& language = "en") {
        std::optional<QString> text;
        actor.start([&]() -> Task<void> {
            try {
                text = co_await transcription.transcribeChunked(runner, wav, WhisperMode::Transcribe,
                                                                language, lengths.chunkSeconds,
                                                                lengths.overlapSeconds, lengths.minDuration);
            } catch (const WhisperError& error) { // of a recording without a sample
                text = error.what();
            }
        });
        EXPECT_TRUE(actor.runToRest(std::chrono::hours(10)));
        EXPECT_TRUE(text);
        return text.value_or("(none)");
    }

    /// The same recording, with what was done ahead and without.
    void expectSameTexts(const QString& language = "en") {
        recorder.stop(wav);
        const auto ahead = transcribe(chunked, language);
        EXPECT_EQ(ahead, transcribe(plain, language));
        EXPECT_EQ(tool.prepared(), 0);
        EXPECT_LE(tool.mostPrepared(), 1);
        files.remove(wav);
        EXPECT_EQ(files.count("talvera-"), 0) << files.files().join(' ').toStdString();
    }

    /// How many runs so far were of a chunk, and prepared.
    int chunksAhead() const {
        return static_cast<int>(
            std::count_if(tool.requests().begin(), tool.requests().end(), [](const ToolRequest& run) {
                return run.wasPrepared && run.wav.contains("-chunk");
            }));
    }

    static constexpr std::size_t second = 16000; ///< in samples

    const QString binary = QStringLiteral("/app/whisper-cli");
    const QString model = QStringLiteral("/app/m.bin");
    const AudioChunker::Lengths lengths;
    SimulatedMainActor actor;
    SimulatedBackgroundPool background{actor};
    FakeFileSystem files;
    FakeAudioEngine engine;
    FakeAudioConverterFactory converters;
    FakeAudioFileReader reader{files};
    FakeChildProcess tool{actor, files};
    RecordingConsole console;
    AudioRecorder recorder{engine, converters, files, actor};
    WhisperRunner runner{tool, files, "/tmp", binary, model};
    EarlyRecognition early{{actor, background, files, recorder, runner}, lengths};
    ChunkedTranscription chunked{actor, background, files, reader, console, &early};
    ChunkedTranscription plain{actor, background, files, reader, console};
    QString wav;
    int recordings = 0;
};

} // namespace talvera::test
