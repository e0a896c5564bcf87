// SPDX-License-Identifier: MIT
#include "speech/WhisperRunner.h"

#include "FakeChildProcess.h"
#include "FakeFileSystem.h"
#include "SimulatedMainActor.h"
#include "speech/WavWriter.h"

#include <gtest/gtest.h>

#include <cerrno>

using namespace talvera;
using namespace talvera::test;

namespace {

const auto binary = QStringLiteral("/app/Resources/whisper-cli");
const auto model = QStringLiteral("/models/m.bin");
const auto wav = QStringLiteral("/tmp/a.b.wav");
const auto textFile = QStringLiteral("/tmp/a.b.txt");

class WhisperRunnerTest : public testing::Test {
protected:
    WhisperRunnerTest() {
        files.addExecutable(binary);
        files.createDirectories("/models");
        files.write(model, "model");
        writeWAV(files, std::vector<std::int16_t>(16000), 16000, wav);
    }

    QString transcribe(const QString& path = wav, const QString& language = "en") {
        return runner.transcribe(path, WhisperMode::Transcribe, language);
    }

    WhisperError failure(const QString& path = wav) {
        try {
            transcribe(path);
        } catch (const WhisperError& error) {
            return error;
        }
        ADD_FAILURE() << "no failure";
        return WhisperError::missingBinary();
    }

    SimulatedMainActor actor;
    FakeFileSystem files{{"/tmp"}};
    FakeChildProcess tool{actor, files};
    WhisperRunner runner{tool, files, "/tmp", binary, model};
};

TEST_F(WhisperRunnerTest, goodRun_givesTheTidiedTextAndTakesTheFileAway) {
    tool.setRuns({{" Hello [noise]\n world , new line this is it\n"}});
    EXPECT_EQ(transcribe(), "Hello world, \nthis is it");
    EXPECT_FALSE(files.exists(textFile));
    EXPECT_TRUE(files.exists(wav));
}

TEST_F(WhisperRunnerTest, tool_runsInTheTemporaryDirectoryWithItsArguments) {
    transcribe();
    ASSERT_EQ(tool.requests().size(), 1U);
    const auto& process = tool.requests().front().process;
    EXPECT_EQ(process.executable, binary);
    EXPECT_EQ(process.workingDirectory, "/tmp");
    EXPECT_EQ(process.arguments.mid(0, 6), (QStringList{"-m", model, "-f", wav, "-l", "en"}));
    EXPECT_EQ(process.arguments.value(process.arguments.indexOf("-bs") + 1), "1");
}

TEST_F(WhisperRunnerTest, emptyTextFile_givesTheEmptyText) {
    tool.setRuns({{""}});
    EXPECT_EQ(transcribe(), "");
}

TEST_F(WhisperRunnerTest, toolMissingOrNotExecutable_throwsMissingBinary) {
    files.remove(binary);
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingBinary);
    files.write(binary, "plain");
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingBinary);
    EXPECT_TRUE(tool.requests().empty());
}

TEST_F(WhisperRunnerTest, modelMissing_throwsMissingModelAndStartsNothing) {
    files.remove(model);
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingModel);
    EXPECT_TRUE(tool.requests().empty());
}

TEST_F(WhisperRunnerTest, toolAndModelMissing_complainsAboutTheTool) {
    files.remove(binary);
    files.remove(model);
    EXPECT_EQ(failure().kind(), WhisperError::Kind::MissingBinary);
}

TEST_F(WhisperRunnerTest, modelThatIsADirectory_isTheToolsBusiness) {
    files.remove(model);
    files.createDirectories(model);
    ToolRun run;
    run.status = 3;
    run.standardError = "invalid model data";
    tool.setRuns({run});
    EXPECT_EQ(failure().status(), 3);
}

TEST_F(WhisperRunnerTest, launchFailure_isThrownAsItIs) {
    ToolRun run;
    run.launchFailure = PlatformError("ChildProcess", ENOEXEC, "Exec format error");
    tool.setRuns({run});
    EXPECT_THROW(transcribe(), PlatformError);
}

TEST_F(WhisperRunnerTest, nonZeroStatus_throwsProcessFailedWithTheToolsWordsAndTouchesNoFile) {
    ToolRun run;
    run.status = 10;
    run.standardError = "Fehler: größer\n";
    tool.setRuns({run});
    files.write(textFile, "partial");
    const auto error = failure();
    EXPECT_EQ(error.kind(), WhisperError::Kind::ProcessFailed);
    EXPECT_EQ(error.status(), 10);
    EXPECT_EQ(error.text(), "Fehler: größer\n");
    EXPECT_EQ(files.read(textFile), "partial");
    EXPECT_TRUE(files.exists(wav));
}

TEST_F(WhisperRunnerTest, standardErrorThatIsNoUtf8_becomesAFixedText) {
    ToolRun run;
    run.status = 1;
    run.standardError = "ab\xFF";
    tool.setRuns({run});
    EXPECT_EQ(failure().text(), "<non-utf8>");
    run.standardError = "ab\xC3"; // cut in the middle of a letter
    tool.setRuns({run});
    EXPECT_EQ(failure().text(), "<non-utf8>");
}

TEST_F(WhisperRunnerTest, hungTool_countsAsFailed) {
    ToolRun run;
    run.status = 9;
    run.signalled = true;
    run.hung = true;
    tool.setRuns({run});
    EXPECT_EQ(failure().kind(), WhisperError::Kind::ProcessFailed);
    EXPECT_EQ(failure().status(), 9);
}

TEST_F(WhisperRunnerTest, noTextFile_throwsOutputUnreadable) {
    ToolRun run;
    run.leavesNoFile = true;
    tool.setRuns({run});
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
}

TEST_F(WhisperRunnerTest, fileThatAFullDiskHasCut_isMadeGoodByWhatTheToolHasPrinted) {
    ToolRun run;
    run.text = " Hello wörld\n and more\n";
    for (const qsizetype length : {0, 1, 6, 8, 9, 14, 20}) { // 9: in the middle of a letter
        run.diskEndsAt = length;
        tool.setRuns({run});
        EXPECT_EQ(transcribe(), "Hello wörld and more") << length;
        EXPECT_FALSE(files.exists(textFile));
    }
}

TEST_F(WhisperRunnerTest, fileThatIsWhole_countsWhateverIsPrinted) {
    ToolRun run;
    run.text = " Hello\n";
    for (const auto* printed : {"", "Hel", "progress 100 %\n Hello world\n", "\n Hello", "\xFF"}) {
        run.standardOutput = printed;
        tool.setRuns({run});
        EXPECT_EQ(transcribe(), "Hello") << printed;
    }
}

TEST_F(WhisperRunnerTest, silence_isSilenceOnBothSides) {
    ToolRun run;
    run.standardOutput = "\n \n\n";
    tool.setRuns({run});
    EXPECT_EQ(transcribe(), "");
}

TEST_F(WhisperRunnerTest, toolThatFails_givesNoTextThoughItHasPrintedOne) {
    ToolRun run;
    run.status = 10;
    run.standardOutput = "Hello";
    tool.setRuns({run});
    EXPECT_EQ(failure().kind(), WhisperError::Kind::ProcessFailed);
}

TEST_F(WhisperRunnerTest, noFileAtAll_isNoTextThoughOneWasPrinted) {
    ToolRun run;
    run.leavesNoFile = true;
    run.standardOutput = "Hello";
    tool.setRuns({run});
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
}

TEST_F(WhisperRunnerTest, prompt_isAnArgumentThatNobodyElseShallRead) {
    runner.transcribe(wav, WhisperMode::Transcribe, "auto", QStringLiteral("said before"));
    const auto& process = tool.requests().front().process;
    EXPECT_EQ(process.privateOption, "--prompt");
    EXPECT_EQ(process.arguments.mid(process.arguments.size() - 2), (QStringList{"--prompt", "said before"}));
}

TEST_F(WhisperRunnerTest, textThatIsNoUtf8_throwsOutputUnreadableAndStays) {
    for (const auto& bytes : {QByteArray("ab\xFFyz"), QByteArray("ab\xE2\x82"), QByteArray("\xC0\xAF"),
                              QByteArray("\xED\xA0\x80")}) {
        ToolRun run;
        run.text = bytes;
        tool.setRuns({run});
        EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
        EXPECT_TRUE(files.exists(textFile));
    }
}

TEST_F(WhisperRunnerTest, textWithNuls_isText) {
    tool.setRuns({{QByteArray("a\0b", 3)}});
    EXPECT_EQ(transcribe(), QStringLiteral("a\0b"));
}

TEST_F(WhisperRunnerTest, hugeText_throwsOutputUnreadable) {
    tool.setRuns({{QByteArray(50 << 20, 'x')}});
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
}

TEST_F(WhisperRunnerTest, fileThatCantBeDeleted_stillGivesTheText) {
    tool.setRuns({{"hello"}});
    files.failRemovals(textFile, EACCES);
    EXPECT_EQ(transcribe(), "hello");
    EXPECT_TRUE(files.exists(textFile));
}

TEST_F(WhisperRunnerTest, fileOfAnEarlierPassThatCantBeDeleted_isNotTakenForThisOnes) {
    ToolRun first;
    first.text = "Hallo";
    ToolRun second;
    second.leavesNoFile = true;
    tool.setRuns({first, second});
    files.failRemovals(textFile, EACCES);
    EXPECT_EQ(transcribe(), "Hallo");
    EXPECT_EQ(failure().kind(), WhisperError::Kind::OutputUnreadable);
}

TEST_F(WhisperRunnerTest, secondPass_writesOverAFileThatCantBeDeleted) {
    tool.setRuns({{"Hallo"}, {" Hello\n"}});
    files.failRemovals(textFile, EACCES);
    EXPECT_EQ(transcribe(), "Hallo");
    EXPECT_EQ(transcribe(), "Hello");
}

TEST_F(WhisperRunnerTest, missingRecording_isReportedByTheTool) {
    const auto error = failure("/tmp/none.wav");
    EXPECT_EQ(error.kind(), WhisperError::Kind::ProcessFailed);
    EXPECT_EQ(error.status(), 2);
    const auto& arguments = tool.requests().front().process.arguments;
    EXPECT_EQ(arguments.value(arguments.indexOf("-bs") + 1), "5");
    EXPECT_EQ(arguments.value(arguments.indexOf("-bo") + 1), "5");
}

TEST_F(WhisperRunnerTest, lengthOfTheFile_decidesHowItIsDecoded) {
    for (const auto& [samples, beam] : {std::pair(96000, "5"), std::pair(95999, "1")}) {
        writeWAV(files, std::vector<std::int16_t>(static_cast<std::size_t>(samples)), 16000, wav);
        transcribe();
        const auto& arguments = tool.requests().back().process.arguments;
        EXPECT_EQ(arguments.value(arguments.indexOf("-bs") + 1), beam) << samples;
        EXPECT_EQ(arguments.value(arguments.indexOf("-bo") + 1), beam) << samples;
        EXPECT_EQ(arguments.contains("-nf"), samples < 96000) << samples;
    }
}

TEST_F(WhisperRunnerTest, pathWithBlanksAndQuotes_isOneArgument) {
    const auto path = QStringLiteral("/tmp/my \"own\" 'sound' $x.wav");
    writeWAV(files, std::vector<std::int16_t>(16000), 16000, path);
    tool.setRuns({{"hello"}});
    EXPECT_EQ(transcribe(path), "hello");
    EXPECT_TRUE(tool.requests().front().process.arguments.contains(path));
}

TEST_F(WhisperRunnerTest, makeDefault_looksBesideTheProgram) {
    const Directories directories{"/tmp", "/data", "/config", "/app"};
    const auto made = WhisperRunner::makeDefault(tool, files, directories, model);
    EXPECT_EQ(made.binaryURL(), binary);
    EXPECT_EQ(made.modelURL(), model);
    made.transcribe(wav, WhisperMode::Transcribe, "en");
    EXPECT_EQ(tool.requests().front().process.workingDirectory, "/tmp");
}

TEST(WhisperError, logText_namesTheCase) {
    EXPECT_STREQ(WhisperError::missingModel().what(), "missingModel");
    EXPECT_STREQ(WhisperError::processFailed(3, "no").what(), "processFailed(3, \"no\")");
}

} // namespace
