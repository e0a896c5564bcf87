// SPDX-License-Identifier: MIT
#include "FakeChildProcess.h"
#include "FakeFileSystem.h"
#include "SimulatedMainActor.h"
#include "Speech.h"
#include "TinyDisk.h"
#include "eventually.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "speech/WavWriter.h"
#include "speech/WhisperArguments.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

#include <unistd.h>

using namespace talvera;
using namespace talvera::test;

namespace {

// The stand-in for the recognition tool does what the tool does.

struct StandIn {
    SimulatedMainActor actor;
    FakeFileSystem files{{"/private"}};
    FakeChildProcess process{actor, files};
    QString directory = "/private";
    QString binary = "/private/tool";
    QString model = "/private/model";

    StandIn() {
        ToolRun run;
        run.text = " Good morning.\n";
        process.setRuns({run});
    }
    bool fillDisk() {
        files.setCapacity(0);
        return true;
    }
    void leaveMemory(qint64 bytes) { process.freeMemory = bytes; }
    static bool isConfined() { return true; }
};

struct RealTool {
    QTemporaryDir temporary;
    PosixFileSystem files;
    PosixChildProcess process;
    QString directory = temporary.path();
    QString binary = TALVERA_WHISPER_CLI;
    QString model = TALVERA_MICRO_MODEL;
    std::unique_ptr<TinyDisk> disk;

    /// A disk that holds the recording's name and not a byte more.
    bool fillDisk() {
        directory = temporary.path() + "/full";
        disk = std::make_unique<TinyDisk>(directory, 4096);
        if (!disk->isMounted())
            return false;
        files.write(directory + "/filler", QByteArray(4096, 'x'));
        return true;
    }
    void leaveMemory(qint64) {} // it has less than anybody could ask for
    /// To the files that it needs, by the kernel.
    static bool isConfined() {
        constexpr long createRuleset = 444;
        constexpr unsigned askForVersion = 1;
        return ::syscall(createRuleset, nullptr, 0, askForVersion) >= 1;
    }
};

template <typename T>
class RecognitionToolContract : public testing::Test {
protected:
    T tool;

    ChildProcessResult run(const QString& wav, const QString& outputOf) {
        auto arguments = whisperArguments(wav, tool.model, 1.0, WhisperMode::Transcribe, "en", std::nullopt);
        arguments[arguments.indexOf("-of") + 1] = outputOf;
        return tool.process.run({tool.binary, arguments, tool.directory});
    }

    /// The same run, begun ahead of the recording, which comes when the tool waits for it.
    std::unique_ptr<PreparedChild> prepare(const QString& wav, qint64 memory = 0) {
        ChildProcessRequest request{
            tool.binary, whisperArguments(wav, tool.model, 1.0, WhisperMode::Transcribe, "en", std::nullopt),
            tool.directory};
        request.memory = memory;
        return tool.process.prepare(request);
    }

    static std::optional<ChildProcessResult> finish(PreparedChild& prepared) {
        EXPECT_TRUE(eventually([&] { return prepared.isReady(); }));
        return prepared.finish(wavBytes(spoken("Good morning."), 16000));
    }

    QString at(const char* name) const { return tool.directory + '/' + QString::fromUtf8(name); }
};

using Tools = testing::Types<StandIn, RealTool>;
TYPED_TEST_SUITE(RecognitionToolContract, Tools);

TYPED_TEST(RecognitionToolContract, goodRun_leavesTheTextBesideTheName) {
    writeWAV(this->tool.files, spoken("Good morning."), 16000, this->at("a.wav"));
    const auto result = this->run(this->at("a.wav"), this->at("a.b"));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(this->tool.files.read(this->at("a.b.txt")).trimmed(), "Good morning.");
}

TYPED_TEST(RecognitionToolContract, missingRecording_isStatusTwo) {
    const auto result = this->run(this->at("none.wav"), this->at("a"));
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(result.standardError.contains("input file not found"));
    EXPECT_FALSE(this->tool.files.exists(this->at("a.txt")));
}

TYPED_TEST(RecognitionToolContract, recordingWithoutSamples_leavesNoText) {
    writeWAV(this->tool.files, {}, 16000, this->at("a.wav"));
    EXPECT_EQ(this->run(this->at("a.wav"), this->at("a")).status, 0);
    EXPECT_FALSE(this->tool.files.exists(this->at("a.txt")));
}

TYPED_TEST(RecognitionToolContract, missingDirectory_leavesNoTextAndNoError) {
    writeWAV(this->tool.files, spoken("Good morning."), 16000, this->at("a.wav"));
    EXPECT_EQ(this->run(this->at("a.wav"), this->at("none/a")).status, 0);
    EXPECT_FALSE(this->tool.files.exists(this->at("none/a.txt")));
}

TYPED_TEST(RecognitionToolContract, goodRun_printsTheSameText) {
    writeWAV(this->tool.files, spoken("Good morning."), 16000, this->at("a.wav"));
    EXPECT_EQ(this->run(this->at("a.wav"), this->at("a")).standardOutput.trimmed(), "Good morning.");
}

TYPED_TEST(RecognitionToolContract, runThatWasPrepared_leavesAndPrintsTheSameText) {
    const auto run = this->prepare(this->at("a.wav"));
    const auto result = this->finish(*run);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 0);
    EXPECT_EQ(this->tool.files.read(this->at("a.txt")).trimmed(), "Good morning.");
    EXPECT_EQ(result->standardOutput.trimmed(), "Good morning.");
    EXPECT_FALSE(run->isReady());
}

TYPED_TEST(RecognitionToolContract, runThatWasPreparedInAnotherDirectoryOfThatPath_leavesNoText) {
    this->tool.directory = this->at("inner");
    this->tool.files.createDirectories(this->tool.directory);
    const auto run = this->prepare(this->at("a.wav"));
    EXPECT_TRUE(eventually([&] { return run->isReady(); }));
    this->tool.files.removeAll(this->tool.directory);
    this->tool.files.createDirectories(this->tool.directory);
    const auto result = this->finish(*run);
    ASSERT_TRUE(result);
    if (!this->tool.isConfined())
        GTEST_SKIP() << "this kernel has no Landlock, or not for us";
    EXPECT_EQ(result->status, 0);
    EXPECT_FALSE(this->tool.files.exists(this->at("a.txt")));
}

TYPED_TEST(RecognitionToolContract, preparedRunThatIsEnded_givesNothing) {
    const auto run = this->prepare(this->at("a.wav"));
    run->end();
    EXPECT_EQ(run->finish({}), std::nullopt);
    EXPECT_FALSE(run->isReady());
    EXPECT_FALSE(this->tool.files.exists(this->at("a.txt")));
}

TYPED_TEST(RecognitionToolContract, preparedRunThatNeedsMoreMemoryThanIsFree_comesToNothing) {
    this->tool.leaveMemory(1 << 30);
    const auto run = this->prepare(this->at("a.wav"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(run->finish({}), std::nullopt);
}

TYPED_TEST(RecognitionToolContract, fullDisk_leavesAnEmptyTextAndNoErrorButPrintsIt) {
    const auto wav = this->at("a.wav");
    writeWAV(this->tool.files, spoken("Good morning."), 16000, wav);
    if (!this->tool.fillDisk())
        GTEST_SKIP() << "only root may mount a disk";
    const auto result = this->run(wav, this->at("a"));
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(this->tool.files.read(this->at("a.txt")), "");
    EXPECT_EQ(result.standardOutput.trimmed(), "Good morning.");
}

} // namespace
