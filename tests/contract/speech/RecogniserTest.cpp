// SPDX-License-Identifier: MIT
#include "RecordingConsole.h"
#include "Speech.h"
#include "TinyDisk.h"
#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "failureOf.h"
#include "linux/audio/SndFileReader.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "platform/system/PlatformError.h"
#include "speech/ChunkedTranscription.h"
#include "speech/WavWriter.h"
#include "speech/WhisperRunner.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

/// The real tool, with the tiny model that knows a few sentences, on what a synthetic voice says.
class RecogniserTest : public testing::Test {
protected:
    QString transcribe(const std::vector<std::int16_t>& samples, const QString& language = "en",
                       WhisperMode mode = WhisperMode::Transcribe) {
        writeWAV(files, samples, 16000, wav);
        return runner().transcribe(wav, mode, language);
    }

    WhisperRunner runner() { return {process, files, temporary.path(), TALVERA_WHISPER_CLI, model}; }

    WhisperError failure(const QString& language = "en") {
        return failureOf([&] { runner().transcribe(wav, WhisperMode::Transcribe, language); });
    }

    QTemporaryDir temporary;
    PosixFileSystem files;
    PosixChildProcess process;
    QString model = TALVERA_MICRO_MODEL;
    QString wav = temporary.path() + "/talvera-1.wav";
};

TEST_F(RecogniserTest, englishSentence_isUnderstood) {
    EXPECT_EQ(transcribe(spoken("Please send the report tomorrow.")), "Please send the report tomorrow.");
    EXPECT_EQ(QDir(temporary.path()).entryList(QDir::Files), QStringList{"talvera-1.wav"});
}

TEST_F(RecogniserTest, question_keepsItsMark) {
    EXPECT_EQ(transcribe(spoken("Can you check the invoice today?")), "Can you check the invoice today?");
}

TEST_F(RecogniserTest, german_isUnderstoodAndTranslated) {
    const auto speech = spoken("Das Wetter ist heute schön.", "de");
    EXPECT_EQ(transcribe(speech, "de"), "Das Wetter ist heute schön.");
    EXPECT_EQ(transcribe(speech, "de", WhisperMode::TranslateToEnglish), "The weather is good today.");
}

TEST_F(RecogniserTest, unknownLanguageOfTheSpeaker_isFoundOut) {
    EXPECT_EQ(transcribe(spoken("Пожалуйста, отправьте отчёт.", "ru"), "auto"),
              "Пожалуйста, отправьте отчёт.");
    EXPECT_EQ(transcribe(spoken("Good morning."), ""), "Good morning.");
}

TEST_F(RecogniserTest, silence_givesNoWords) {
    EXPECT_EQ(transcribe(std::vector<std::int16_t>(48000)), "");
}

TEST_F(RecogniserTest, longClip_takesTheBeamAndIsUnderstood) {
    const auto speech =
        joined({spoken("Hello Anna, how are you?"), spoken("Please send the report tomorrow."),
                spoken("The meeting starts at nine on Monday.")},
               0.5);
    ASSERT_GT(speech.size(), 6U * 16000);
    EXPECT_EQ(
        transcribe(speech),
        "Hello Anna, how are you? Please send the report tomorrow. The meeting starts at nine on Monday.");
}

TEST_F(RecogniserTest, pathWithBlanksAndQuotes_reachesTheTool) {
    wav = temporary.path() + "/my \"own\" $ound 'n' größe.wav";
    EXPECT_EQ(transcribe(spoken("Good morning.")), "Good morning.");
}

TEST_F(RecogniserTest, missingRecording_fails) {
    const auto error = failure();
    EXPECT_EQ(error.kind(), WhisperError::Kind::ProcessFailed);
    EXPECT_EQ(error.status(), 2);
    EXPECT_TRUE(error.text().contains("input file not found"));
}

TEST_F(RecogniserTest, recordingThatIsEmptyOrNoSound_isUnreadable) {
    for (const auto& bytes :
         {QByteArray(), wavBytes({}, 16000), wavBytes({}, 16000).left(20), QByteArray(5000, 'x')}) {
        files.write(wav, bytes);
        EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable) << bytes.size();
    }
}

TEST_F(RecogniserTest, recordingThatWasCutOff_isUnderstoodAsFarAsItGoes) {
    const auto speech = joined({spoken("Good morning."), spoken("Please send the report tomorrow.")}, 1.0);
    const auto kept = spoken("Good morning.").size() + 8000;
    files.write(wav, wavBytes(speech, 16000).left(44 + static_cast<qsizetype>(kept) * 2));
    EXPECT_EQ(runner().transcribe(wav, WhisperMode::Transcribe, "en"), "Good morning.");
}

TEST_F(RecogniserTest, diskThatIsFullAfterTheRecording_losesNoWord) {
    const TinyDisk disk(temporary.path() + "/small", 256 * 1024);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root may mount a disk";
    wav = temporary.path() + "/small/talvera-1.wav";
    const auto speech = spoken("Please send the report tomorrow.");
    writeWAV(files, speech, 16000, wav);
    files.write(temporary.path() + "/small/talvera-1.txt", {}); // its name takes room as well
    qsizetype filling = 1 << 20;
    while (filling > 0) { // down to the last byte
        try {
            files.write(temporary.path() + "/small/filler", QByteArray(filling, 'x'));
            break;
        } catch (const PlatformError&) {
            filling -= 4096;
        }
    }
    EXPECT_EQ(runner().transcribe(wav, WhisperMode::Transcribe, "en"), "Please send the report tomorrow.");
}

TEST_F(RecogniserTest, modelThatIsNone_fails) {
    writeWAV(files, std::vector<std::int16_t>(16000), 16000, wav);
    model = temporary.path() + "/model";
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingModel);
    files.write(model, QByteArray(1000, 'x'));
    EXPECT_EQ(failure().status(), 3);
    files.remove(model);
    files.createDirectories(model);
    EXPECT_EQ(failure().status(), 3);
}

TEST_F(RecogniserTest, languageThatTheToolDoesNotKnow_isUnreadable) {
    writeWAV(files, std::vector<std::int16_t>(16000), 16000, wav);
    EXPECT_EQ(failure("xx").kind(), WhisperError::Kind::OutputUnreadable);
}

Task<void> transcribeInto(ChunkedTranscription& chunked, const WhisperRunner& runner, QString wav,
                          std::optional<QString>& text) {
    text = co_await chunked.transcribeChunked(runner, wav, WhisperMode::Transcribe, QStringLiteral("en"),
                                              25.0, 2.0, 28.0);
}

TEST_F(RecogniserTest, fortySeconds_comeOutAsOneTextWithoutDoubledWords) {
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    QtMainActor actor;
    ThreadBackgroundPool background(actor);
    SndFileReader reader;
    RecordingConsole console;
    ChunkedTranscription chunked(actor, background, files, reader, console);

    const auto speech = fortySecondsOfSpeech();
    const auto length = static_cast<double>(speech.size()) / 16000.0;
    ASSERT_TRUE(length > 28.0 && length <= 48.0) << length;
    writeWAV(files, speech, 16000, wav);

    std::optional<QString> text;
    const auto tool = runner();
    transcribeInto(chunked, tool, wav, text);
    while (!text)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);

    // The tiny model errs in clips of this length, so a sentence may be off, or one too many.
    const auto sentences = sentencesOfFortySeconds();
    const auto said = sentences.join(u' ').split(u' ');
    const auto heard = text->split(u' ');
    EXPECT_NEAR(static_cast<double>(heard.size()), static_cast<double>(said.size()), 6.0)
        << text->toStdString();
    EXPECT_GE(countedOnce(sentences, *text), sentences.size() - 2) << text->toStdString();
    EXPECT_EQ(console.printed().size(), 3);
    EXPECT_EQ(QDir(temporary.path()).entryList(QDir::Files), QStringList{"talvera-1.wav"});
}

} // namespace
