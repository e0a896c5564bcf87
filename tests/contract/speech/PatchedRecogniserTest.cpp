// SPDX-License-Identifier: MIT
// Our build of the recogniser beside the one without our patches: the same text, and less work for it.
#include "Speech.h"
#include "eventually.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "speech/WavWriter.h"
#include "speech/WhisperArguments.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace talvera;
using namespace talvera::test;

namespace {

struct Heard {
    int status = 0;
    QByteArray text;
    QByteArray printed;
    int encoded = 0; ///< how often a window of the sound was encoded
};

/// The one process that this one has started and that lives; 0 if there are none or several.
pid_t onlyChild() {
    QByteArray children;
    const auto tasks = QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const auto& task : tasks) {
        QFile file(QStringLiteral("/proc/self/task/%1/children").arg(task));
        if (file.open(QIODevice::ReadOnly))
            children += file.readAll();
    }
    return children.trimmed().toInt();
}

class PatchedRecogniser : public testing::Test {
protected:
    Heard hear(const char* tool, const std::vector<std::int16_t>& samples, const QString& language,
               WhisperMode mode = WhisperMode::Transcribe,
               const std::optional<QString>& prompt = std::nullopt) {
        writeWAV(files, samples, 16000, wav);
        const auto duration = wavDurationSeconds(*files.size(wav));
        const auto arguments =
            whisperArguments(wav, QStringLiteral(TALVERA_MICRO_MODEL), duration, mode, language, prompt);
        const auto result =
            process.run({QString::fromUtf8(tool), arguments, temporary.path(), QStringLiteral("--prompt")});
        Heard heard;
        heard.status = result.status;
        heard.printed = result.standardOutput;
        heard.text = files.read(temporary.path() + "/a.txt");
        const QRegularExpression encodings("encode time = .*/ +(\\d+) runs");
        heard.encoded = encodings.match(QString::fromUtf8(result.standardError)).captured(1).toInt();
        return heard;
    }

    /// The same by a prepared run: the recording comes when the tool waits for it, and on no other way.
    Heard hearPrepared(const std::vector<std::int16_t>& samples, const QString& language,
                       WhisperMode mode = WhisperMode::Transcribe,
                       const std::optional<QString>& prompt = std::nullopt) {
        QFile::remove(wav);
        auto recording = wavBytes(samples, 16000);
        const auto arguments = whisperArguments(wav, QStringLiteral(TALVERA_MICRO_MODEL),
                                                wavDurationSeconds(recording.size()), mode, language, prompt);
        const auto run = process.prepare(
            {QStringLiteral(TALVERA_WHISPER_CLI), arguments, temporary.path(), QStringLiteral("--prompt")});
        EXPECT_TRUE(eventually([&] { return run->isReady(); }));
        Heard heard;
        const auto result = run->finish(recording);
        if (!result) {
            ADD_FAILURE() << "it has come to nothing";
            return heard;
        }
        heard.status = result->status;
        heard.printed = result->standardOutput;
        heard.text = files.read(temporary.path() + "/a.txt");
        return heard;
    }

    void expectSameTextWhenPrepared(const std::vector<std::int16_t>& samples, const QString& language,
                                    WhisperMode mode = WhisperMode::Transcribe,
                                    const std::optional<QString>& prompt = std::nullopt) {
        const auto stock = hear(TALVERA_STOCK_WHISPER_CLI, samples, language, mode, prompt);
        QFile::remove(temporary.path() + "/a.txt");
        const auto prepared = hearPrepared(samples, language, mode, prompt);
        EXPECT_EQ(prepared.status, 0);
        EXPECT_EQ(prepared.text, stock.text) << language.toStdString();
        EXPECT_EQ(prepared.printed, stock.printed) << language.toStdString();
    }

    /// Answers how many encodings less it took.
    int expectSameText(const std::vector<std::int16_t>& samples, const QString& language,
                       WhisperMode mode = WhisperMode::Transcribe,
                       const std::optional<QString>& prompt = std::nullopt) {
        const auto stock = hear(TALVERA_STOCK_WHISPER_CLI, samples, language, mode, prompt);
        const auto ours = hear(TALVERA_WHISPER_CLI, samples, language, mode, prompt);
        EXPECT_EQ(stock.status, 0);
        EXPECT_EQ(ours.status, 0);
        EXPECT_EQ(ours.text, stock.text) << language.toStdString();
        EXPECT_EQ(ours.printed, stock.printed) << language.toStdString();
        return stock.encoded - ours.encoded;
    }

    QTemporaryDir temporary;
    PosixFileSystem files;
    PosixChildProcess process;
    QString wav = temporary.path() + "/a.wav";
};

struct Sentence {
    const char* name;
    const char* language;
    const char* text;
};

class PatchedRecogniserOnSentences : public PatchedRecogniser,
                                     public testing::WithParamInterface<Sentence> {};

TEST_P(PatchedRecogniserOnSentences, sayTheSame_andTheLanguageCostsNoSecondEncoding) {
    const auto speech = spoken(QString::fromUtf8(GetParam().text), QString::fromUtf8(GetParam().language));
    EXPECT_EQ(expectSameText(speech, "auto"), 1);
    EXPECT_EQ(expectSameText(speech, QString::fromUtf8(GetParam().language)), 0);
}

INSTANTIATE_TEST_SUITE_P(Recordings, PatchedRecogniserOnSentences,
                         testing::Values(Sentence{"Short", "en", "Good morning."},
                                         Sentence{"Question", "en", "Can you check the invoice today?"},
                                         Sentence{"English", "en", "The meeting starts at nine on Monday."},
                                         Sentence{"German", "de", "Das Wetter ist heute schön."},
                                         Sentence{"Russian", "ru", "Пожалуйста, отправьте отчёт."},
                                         Sentence{"Unknown", "fr",
                                                  "Je voudrais une tasse de café, s'il vous plaît."}),
                         [](const auto& test) { return test.param.name; });

TEST_P(PatchedRecogniserOnSentences, sayTheSameWhenTheyComeToAPreparedRun) {
    const auto speech = spoken(QString::fromUtf8(GetParam().text), QString::fromUtf8(GetParam().language));
    expectSameTextWhenPrepared(speech, "auto");
    expectSameTextWhenPrepared(speech, QString::fromUtf8(GetParam().language));
}

TEST_F(PatchedRecogniser, preparedTranslationAndBeamSearchBehindAPrompt_sayTheSame) {
    expectSameTextWhenPrepared(spoken("Das Wetter ist heute schön.", "de"), "auto",
                               WhisperMode::TranslateToEnglish);
    const auto speech =
        joined({spoken("Hello Anna, how are you?"), spoken("Please send the report tomorrow."),
                spoken("The meeting starts at nine on Monday.")},
               0.5);
    expectSameTextWhenPrepared(speech, "auto", WhisperMode::Transcribe, QStringLiteral("Good morning."));
}

TEST_F(PatchedRecogniser, preparedRun_hasGivenUpAllElseBeforeTheRecordingComes) {
    const auto arguments = whisperArguments(wav, QStringLiteral(TALVERA_MICRO_MODEL), 1.0,
                                            WhisperMode::Transcribe, "en", std::nullopt);
    const auto run = process.prepare({QStringLiteral(TALVERA_WHISPER_CLI), arguments, temporary.path(), {}});
    ASSERT_TRUE(eventually([&] { return run->isReady(); }));
    const auto tool = onlyChild();
    ASSERT_GT(tool, 0);
    QFile status(QStringLiteral("/proc/%1/status").arg(tool));
    ASSERT_TRUE(status.open(QIODevice::ReadOnly));
    const auto lines = status.readAll();
    EXPECT_TRUE(lines.contains("NoNewPrivs:\t1")) << lines.constData();
    EXPECT_TRUE(lines.contains("Seccomp:\t2")) << lines.constData();
}

TEST_F(PatchedRecogniser, preparedRunWithoutARecording_leavesNoText) {
    const auto arguments = whisperArguments(wav, QStringLiteral(TALVERA_MICRO_MODEL), 1.0,
                                            WhisperMode::Transcribe, "en", std::nullopt);
    const auto run = process.prepare({QStringLiteral(TALVERA_WHISPER_CLI), arguments, temporary.path(), {}});
    const auto result = run->finish({});
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 0);
    EXPECT_TRUE(QDir(temporary.path()).isEmpty());
}

TEST_F(PatchedRecogniser, descriptorThatIsNone_isNoPreparation) {
    const auto speech = spoken("Good morning.");
    for (const auto* number : {"", "0", "77", "-1", "a socket"}) {
        qputenv("TALVERA_INPUT_FD", number);
        EXPECT_EQ(hear(TALVERA_WHISPER_CLI, speech, "en").text.trimmed(), "Good morning.") << number;
    }
    qunsetenv("TALVERA_INPUT_FD");
}

TEST_F(PatchedRecogniser, unpatchedTool_isNotPrepared) {
    const auto run = process.prepare({QStringLiteral(TALVERA_STOCK_WHISPER_CLI), {}, temporary.path(), {}});
    EXPECT_EQ(run->finish("x"), std::nullopt);
}

TEST_F(PatchedRecogniser, translation_staysTheSame) {
    const auto speech = spoken("Das Wetter ist heute schön.", "de");
    EXPECT_EQ(expectSameText(speech, "auto", WhisperMode::TranslateToEnglish), 1);
}

TEST_F(PatchedRecogniser, beamSearchBehindAPrompt_staysTheSame) {
    const auto speech =
        joined({spoken("Hello Anna, how are you?"), spoken("Please send the report tomorrow."),
                spoken("The meeting starts at nine on Monday.")},
               0.5);
    ASSERT_GT(speech.size(), 6U * 16000);
    EXPECT_EQ(expectSameText(speech, "auto", WhisperMode::Transcribe, QStringLiteral("Good morning.")), 1);
}

TEST_F(PatchedRecogniser, silenceAndNoise_stayTheSame) {
    EXPECT_EQ(expectSameText(std::vector<std::int16_t>(32000), "auto"), 1);
    std::vector<std::int16_t> noise;
    unsigned state = 1;
    for (int i = 0; i < 48000; ++i) {
        state = state * 1664525U + 1013904223U;
        noise.push_back(static_cast<std::int16_t>(static_cast<int>(state >> 20U) - 2048));
    }
    EXPECT_EQ(expectSameText(noise, "auto"), 1);
}

TEST_F(PatchedRecogniser, moreThanOneWindow_isEncodedWindowByWindowAsBefore) {
    std::vector<std::vector<std::int16_t>> parts;
    for (int i = 0; i < 9; ++i) {
        parts.push_back(spoken("Please send the report tomorrow."));
        parts.push_back(spoken("Where is the new document?"));
    }
    const auto speech = joined(parts, 0.4);
    ASSERT_GT(speech.size(), 32U * 16000);
    EXPECT_EQ(expectSameText(speech, "auto"), 1);
}

TEST_F(PatchedRecogniser, plugInThatLiesWhereItRuns_isNotLoaded) {
    const QString planted = temporary.path() + "/libggml-blas.so";
    ASSERT_TRUE(QFile::copy(TALVERA_PLANTED_PLUG_IN, planted));
    const auto speech = spoken("Good morning.");
    EXPECT_TRUE(hear(TALVERA_STOCK_WHISPER_CLI, speech, "en").printed.contains("planted"))
        << "the plug-in shows nothing";
    const auto ours = hear(TALVERA_WHISPER_CLI, speech, "en");
    EXPECT_FALSE(ours.printed.contains("planted"));
    EXPECT_EQ(ours.text.trimmed(), "Good morning.");
}

} // namespace
