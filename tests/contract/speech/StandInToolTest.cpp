// SPDX-License-Identifier: MIT
#include "TinyDisk.h"
#include "failureOf.h"
#include "linux/audio/SndFileReader.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "platform/system/PlatformError.h"
#include "speech/AudioChunker.h"
#include "speech/WavWriter.h"
#include "speech/WhisperRunner.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>

#include <sys/stat.h>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

/// The runner on the machine's own processes and files, with a shell script in place of the recognition tool.
/// In the script, $out is the path of the text file.
class StandInToolTest : public testing::Test {
protected:
    StandInToolTest() {
        writeWAV(files, std::vector<std::int16_t>(16000), 16000, wav);
        files.write(model, "model");
    }

    void toolIs(const QByteArray& script) {
        files.write(binary, "#!/bin/sh\nwhile [ \"$1\" != -of ]; do shift; done\nout=$2.txt\n" + script);
        ::chmod(binary.toLocal8Bit().constData(), 0700);
    }

    QString transcribe() {
        WhisperRunner runner(process, files, temporary.path(), binary, model);
        return runner.transcribe(wav, WhisperMode::Transcribe, "en");
    }

    WhisperError failure() {
        return failureOf([this] { transcribe(); });
    }

    QTemporaryDir temporary;
    PosixFileSystem files;
    PosixChildProcess process{{500ms, 20s}};
    QString binary = temporary.path() + "/tool";
    QString model = temporary.path() + "/model.bin";
    QString wav = temporary.path() + "/my \"own\" $ound.a.wav";
    QString text = temporary.path() + "/my \"own\" $ound.a.txt";
};

TEST_F(StandInToolTest, goodTool_givesItsTextAndLeavesNoFile) {
    toolIs("printf ' Hello\\n wörld , [noise]\\n' > \"$out\"");
    EXPECT_EQ(transcribe(), "Hello wörld,");
    EXPECT_FALSE(files.exists(text));
    EXPECT_TRUE(files.exists(wav));
}

TEST_F(StandInToolTest, missingTool_isToldAsSuch) {
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingBinary);
}

TEST_F(StandInToolTest, toolThatIsNotExecutable_countsAsMissing) {
    toolIs("exit 0");
    ::chmod(binary.toLocal8Bit().constData(), 0600);
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingBinary);
    files.remove(binary);
    files.createDirectories(binary);
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingBinary);
}

TEST_F(StandInToolTest, toolThatIsNoProgram_isTheLaunchesFailure) {
    files.write(binary, "no program");
    ::chmod(binary.toLocal8Bit().constData(), 0700);
    EXPECT_THROW(transcribe(), PlatformError);
}

TEST_F(StandInToolTest, missingModel_isToldAsSuch) {
    toolIs("exit 0");
    files.remove(model);
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingModel);
}

TEST_F(StandInToolTest, hangingTool_isEndedAndCountsAsFailed) {
    toolIs("echo working >&2; sleep 1000");
    const auto error = failure();
    EXPECT_EQ(error.kind(), WhisperError::Kind::ProcessFailed);
    EXPECT_EQ(error.status(), SIGKILL);
    EXPECT_EQ(error.text(), "working\n");
}

TEST_F(StandInToolTest, toolThatExitsBadly_leavesItsPartialText) {
    toolIs("echo partial > \"$out\"; echo 'no good' >&2; exit 10");
    const auto error = failure();
    EXPECT_EQ(error.kind(), WhisperError::Kind::ProcessFailed);
    EXPECT_EQ(error.status(), 10);
    EXPECT_EQ(error.text(), "no good\n");
    EXPECT_EQ(files.read(text), "partial\n");
}

TEST_F(StandInToolTest, toolThatDiesByASignal_failsWithItsNumber) {
    toolIs("echo partial > \"$out\"; kill -ABRT $$");
    const auto error = failure();
    EXPECT_EQ(error.kind(), WhisperError::Kind::ProcessFailed);
    EXPECT_EQ(error.status(), SIGABRT);
}

TEST_F(StandInToolTest, standardErrorThatIsNoText_becomesAFixedWord) {
    toolIs("printf '\\377\\376' >&2; exit 1");
    EXPECT_EQ(failure().text(), "<non-utf8>");
}

TEST_F(StandInToolTest, toolThatClosesItsStreams_isFine) {
    toolIs("exec >&- 2>&-; echo hello > \"$out\"");
    EXPECT_EQ(transcribe(), "hello");
}

TEST_F(StandInToolTest, toolWithoutTextFile_isUnreadable) {
    toolIs("exit 0");
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
}

TEST_F(StandInToolTest, directoryOrPipeInPlaceOfTheText_isUnreadableAndNeverAWait) {
    toolIs("mkdir \"$out\"");
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
    toolIs("rmdir \"$out\"; mkfifo \"$out\"");
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
}

TEST_F(StandInToolTest, bytesThatAreNoText_areUnreadable) {
    toolIs("printf 'ab\\377' > \"$out\"");
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
}

TEST_F(StandInToolTest, nulsInTheText_pass) {
    toolIs("printf 'a\\0b' > \"$out\"");
    EXPECT_EQ(transcribe(), QStringLiteral("a\0b"));
}

TEST_F(StandInToolTest, fiftyMegabytesOfText_areUnreadable) {
    toolIs("head -c 50000000 /dev/zero > \"$out\"");
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
}

TEST_F(StandInToolTest, emptyText_isNoError) {
    toolIs(": > \"$out\"");
    EXPECT_EQ(transcribe(), "");
}

TEST_F(StandInToolTest, muchChatter_blocksNobody) {
    toolIs("head -c 3000000 /dev/zero >&2; head -c 500000 /dev/zero; echo hello > \"$out\"");
    EXPECT_EQ(transcribe(), "hello");
}

TEST(FullTemporaryDirectory, recording_isReportedAndLeavesNoFile) {
    const QTemporaryDir temporary;
    const TinyDisk disk(temporary.path() + "/disk", 64 * 1024);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root may mount one";
    PosixFileSystem files;
    const auto wav = temporary.path() + "/disk/a.wav";
    try {
        writeWAV(files, std::vector<std::int16_t>(100'000), 16000, wav);
        ADD_FAILURE() << "no failure";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.code(), ENOSPC);
    }
    EXPECT_FALSE(files.exists(wav));
}

TEST(FullTemporaryDirectory, chunks_areReportedAndTheRecordingStaysWhole) {
    const QTemporaryDir temporary;
    const TinyDisk disk(temporary.path() + "/disk", 2'300'000);
    if (!disk.isMounted())
        GTEST_SKIP() << "only root may mount one";
    PosixFileSystem files;
    SndFileReader reader;
    const auto wav = temporary.path() + "/disk/a.wav";
    writeWAV(files, std::vector<std::int16_t>(640'000), 16000, wav); // 40 seconds
    try {
        AudioChunker::split(reader, files, wav, {25.0, 2.0, 28.0});
        ADD_FAILURE() << "no failure";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.code(), ENOSPC);
    }
    EXPECT_EQ(files.size(wav), 44 + 1'280'000);
    EXPECT_EQ(QDir(temporary.path() + "/disk").entryList(QDir::Files),
              (QStringList{"a-chunk0.wav", "a.wav"}));
}

} // namespace
