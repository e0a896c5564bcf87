// SPDX-License-Identifier: MIT
// head_start_costs [SHORT [LONG [MODEL]]]: what the user waits for after the release, beside the recogniser
// as it comes, which begins then, in turns on the same recordings: so many short ones and so many of a
// minute, spoken in as much time as they last. MODEL is the micro model, or one of real size
// (tools/large-model/make).
#include "FakeAudioConverter.h"
#include "FakeAudioEngine.h"
#include "RecordingConsole.h"
#include "Speech.h"
#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "linux/audio/SndFileReader.h"
#include "linux/posix/PosixChildProcess.h"
#include "linux/posix/PosixFileSystem.h"
#include "speech/AudioRecorder.h"
#include "speech/ChunkedTranscription.h"
#include "speech/EarlyRecognition.h"
#include "speech/WhisperArguments.h"
#include "support/Figure.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

using namespace talvera;
using namespace talvera::bench;

namespace {

using Sound = std::vector<std::int16_t>;

constexpr std::size_t rate = 16000;

Sound soundOf(double seconds) {
    const auto sentence = test::spoken(QStringLiteral("Please send the report tomorrow."));
    std::vector<Sound> parts;
    while (static_cast<double>(parts.size() * (sentence.size() + rate / 2)) < (seconds + 3) * rate)
        parts.push_back(sentence);
    auto sound = test::joined(parts, 0.5);
    sound.resize(static_cast<std::size_t>(seconds * rate));
    sound.back() = 5000; // so that no silence at the end is trimmed
    return sound;
}

void pass(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

/// A dictation without a desktop: recorder, recogniser, and what is done ahead.
class Dictation {
public:
    explicit Dictation(const QString& model)
        : m_model(model) {
        m_recorder.setOnLevel([this](float) { m_early.follow(); });
    }

    /// Records this in its own time; answers how long the text takes from the release on. `asked` is the
    /// language of the release.
    double release(const Sound& sound, const QString& language, const QString& asked) {
        m_recorder.start();
        m_early.begin({m_wav, WhisperMode::Transcribe, language});
        constexpr std::size_t piece = rate / 10;
        for (std::size_t at = 0; at < sound.size(); at += piece) {
            const auto end = std::min(at + piece, sound.size());
            m_microphone.deliver(Sound(sound.begin() + static_cast<std::ptrdiff_t>(at),
                                       sound.begin() + static_cast<std::ptrdiff_t>(end)));
            pass(std::chrono::milliseconds(100));
        }
        const auto released = Clock::now();
        m_recorder.stop(m_wav);
        std::optional<Clock::time_point> came;
        m_actor.start([&]() -> Task<void> {
            const auto& lengths = AudioChunker::usualLengths;
            co_await m_chunked.transcribeChunked(m_runner, m_wav, WhisperMode::Transcribe, asked,
                                                 lengths.chunkSeconds, lengths.overlapSeconds,
                                                 lengths.minDuration);
            came = Clock::now();
        });
        while (!came)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return milliseconds(*came - released);
    }

    /// How long the tool as it comes takes for the last recording.
    double stock(const QString& language) {
        const auto seconds = wavDurationSeconds(m_files.size(m_wav).value_or(0));
        const auto arguments =
            whisperArguments(m_wav, m_model, seconds, WhisperMode::Transcribe, language, {});
        const auto begun = Clock::now();
        if (m_processes.run({QStringLiteral(TALVERA_STOCK_WHISPER_CLI), arguments, m_directory.path()})
                .status != 0)
            throw std::runtime_error("the recogniser failed");
        return milliseconds(Clock::now() - begun);
    }

private:
    const QString m_model;
    QTemporaryDir m_directory;
    QString m_wav = m_directory.path() + QStringLiteral("/talvera-1.wav");
    PosixFileSystem m_files;
    PosixChildProcess m_processes;
    QtMainActor m_actor;
    test::RecordingConsole m_console;
    SndFileReader m_reader;
    test::FakeAudioEngine m_microphone; // delivers what it is given, at once
    test::FakeAudioConverterFactory m_converters;
    AudioRecorder m_recorder{m_microphone, m_converters, m_files, m_actor};
    WhisperRunner m_runner{m_processes, m_files, m_directory.path(), QStringLiteral(TALVERA_WHISPER_CLI),
                           m_model};
    ThreadBackgroundPool m_background{m_actor};
    EarlyRecognition m_early{{m_actor, m_background, m_files, m_recorder, m_runner}};
    ChunkedTranscription m_chunked{m_actor, m_background, m_files, m_reader, m_console, &m_early};
};

struct Case {
    std::string what;
    double seconds;
    QString language;      ///< when the recording begins
    QString finalLanguage; ///< at the release
    double aim;
};

void compare(const QString& model, const Case& each, int recordings) {
    Dictation dictation(model);
    const auto sound = soundOf(each.seconds);
    Figure ours(each.what + ": release to text");
    Figure theirs("  the recogniser as it comes, begun at the release");
    Figure ratio(each.what + ": ratio", "");
    for (int recording = 0; recording <= recordings; ++recording) {
        const auto our = dictation.release(sound, each.language, each.finalLanguage);
        const auto their = dictation.stock(each.finalLanguage);
        if (recording == 0 && recordings > 1)
            continue; // what is read from the disk
        ours.add(our);
        theirs.add(their);
        ratio.add(our / their);
    }
    ours.print();
    theirs.print();
    ratio.print(Aim::atMost(each.aim));
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int shortOnes = argc > 1 ? std::atoi(argv[1]) : 20;
    const int longOnes = argc > 2 ? std::atoi(argv[2]) : 3;
    const auto model = argc > 3 ? QString::fromLocal8Bit(argv[3]) : QStringLiteral(TALVERA_MICRO_MODEL);
    const auto automatic = QStringLiteral("auto");
    const auto english = QStringLiteral("en");
    try {
        if (shortOnes > 0) {
            compare(model, {"4 s, language found out", 4, automatic, automatic, 0.60}, shortOnes);
            compare(model, {"4 s, language given", 4, english, english, 0.90}, shortOnes);
            compare(model, {"4 s, prepared run thrown away", 4, automatic, english, 1.02}, shortOnes);
        }
        if (longOnes > 0)
            compare(model, {"60 s, language found out", 60, automatic, automatic, 0.35}, longOnes);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "head_start_costs: %s\n", error.what());
        return 1;
    }
    return 0;
}
