// SPDX-License-Identifier: MIT
// What was said in a long dictation is nobody else's business while it is being recognised.
#include "Eavesdropper.h"
#include "RecordingConsole.h"
#include "Speech.h"
#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "linux/audio/SndFileReader.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "speech/ChunkedTranscription.h"
#include "speech/WavWriter.h"
#include "speech/WhisperRunner.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace talvera;
using namespace talvera::test;

namespace {

Task<void> transcribeInto(ChunkedTranscription& chunked, const WhisperRunner& runner, QString wav,
                          std::optional<QString>& text) {
    text = co_await chunked.transcribeChunked(runner, wav, WhisperMode::Transcribe, QStringLiteral("en"),
                                              25.0, 2.0, 28.0);
}

/// What this user dictates for a minute, and what another user has read meanwhile.
struct Dictation {
    QString text;
    QByteArray heard;
};

Dictation dictateForAMinute(const QString& tool, const QString& directory) {
    std::vector<std::vector<std::int16_t>> parts;
    for (int i = 0; i < 12; ++i) {
        parts.push_back(
            spoken(i % 2 == 0 ? "Please send the report tomorrow." : "Where is the new document?"));
        parts.push_back(spoken("The meeting starts at nine on Monday."));
    }
    const auto speech = joined(parts, 0.5);
    PosixFileSystem files;
    const QString wav = directory + "/talvera-1.wav";
    writeWAV(files, speech, 16000, wav);
    EXPECT_GT(speech.size(), 55U * 16000);

    Eavesdropper nobody(directory.toUtf8());
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    QtMainActor actor;
    ThreadBackgroundPool background(actor);
    SndFileReader reader;
    RecordingConsole console;
    PosixChildProcess process;
    ChunkedTranscription chunked(actor, background, files, reader, console);
    const WhisperRunner runner(process, files, directory, tool, TALVERA_MICRO_MODEL);
    std::optional<QString> text;
    transcribeInto(chunked, runner, wav, text);
    while (!text)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return {*text, nobody.tell()};
}

bool saysTheWords(const QByteArray& heard) {
    return heard.contains("report tomorrow") || heard.contains("new document") ||
           heard.contains("at nine on");
}

TEST(PromptPrivacy, minuteOfDictation_canNotBeReadByAnotherUser) {
    const QTemporaryDir temporary;
    const auto dictation = dictateForAMinute(TALVERA_WHISPER_CLI, temporary.path());
    EXPECT_TRUE(dictation.text.contains("report tomorrow")) << dictation.text.toStdString();
    EXPECT_TRUE(dictation.heard.contains("talvera-1-chunk1.wav")) << "the other user wasn't looking";
    EXPECT_TRUE(dictation.heard.contains("--prompt"));
    EXPECT_FALSE(saysTheWords(dictation.heard));
}

TEST(PromptPrivacy, recogniserThatTakesItsPromptAsAnArgument_showsWhatThisTestLooksFor) {
    const QTemporaryDir temporary;
    const auto dictation = dictateForAMinute(TALVERA_STOCK_WHISPER_CLI, temporary.path());
    EXPECT_TRUE(saysTheWords(dictation.heard));
}

} // namespace
