// SPDX-License-Identifier: MIT
#include "FakeChildProcess.h"
#include "FakeFileSystem.h"
#include "SimulatedMainActor.h"
#include "Speech.h"
#include "TinyDisk.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "speech/WavWriter.h"
#include "speech/WhisperArguments.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

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
