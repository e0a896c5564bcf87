// SPDX-License-Identifier: MIT
// From what is said into a microphone to the WAV file that the recogniser reads, with nothing stood in for.
#include "SoundServerTest.h"
#include "linux/audio/SndFileReader.h"
#include "linux/audio/SoxrAudioConverter.h"
#include "linux/posix/PosixFileSystem.h"
#include "listening.h"
#include "speech/AudioRecorder.h"

#include <cstring>

using namespace talvera;
using namespace talvera::test;

namespace {

class MicrophoneRecordingTest : public MicrophoneTest {
protected:
    /// Records one second of a tone, and checks what the file holds.
    void recordTone(int microphoneRate, int channels) {
        startWithMicrophone(microphoneRate, channels);
        const auto voice = speak(microphoneRate, channels);
        PulseAudioInput input(connection());
        AudioRecorder recorder(input, converters, files, actor);
        bool leveled = false;
        recorder.setOnLevel([&](float level) { leveled = leveled || level > 0.5F; });
        recorder.start();
        voice->sayAndWait(tone(440, 1.0, 0.5, microphoneRate));
        const auto path = directory.filePath(QStringLiteral("recording.wav"));
        const double seconds = recorder.stop(path);
        EXPECT_TRUE(runUntil([&] { return leveled; }));

        const auto file = SndFileReader().open(path);
        EXPECT_EQ(file->processingFormat().sampleRate, 16000);
        EXPECT_EQ(file->processingFormat().channels, 1);
        EXPECT_NEAR(static_cast<double>(file->length()) / 16000, seconds, 1e-6);
        const auto samples = samplesOf(*file);
        const auto spoken = spokenPart(samples);
        EXPECT_NEAR(static_cast<double>(spoken.size()), 16000, 160);
        EXPECT_NEAR(frequencyOf(spoken, 16000), 440, 2);
        EXPECT_NEAR(levelOf(spoken, 16000), levelOf(tone(440, 1.0, 0.5, 16000), 16000), 300);
    }

    static std::vector<std::int16_t> samplesOf(AudioFile& file) {
        const auto bytes = file.readAll();
        std::vector<std::int16_t> samples;
        if (file.processingFormat().sampleType == SampleType::Int16) {
            samples.resize(bytes.size() / sizeof(std::int16_t));
            std::memcpy(samples.data(), bytes.data(), bytes.size());
            return samples;
        }
        std::vector<float> floats(bytes.size() / sizeof(float));
        std::memcpy(floats.data(), bytes.data(), bytes.size());
        for (const float value : floats)
            samples.push_back(static_cast<std::int16_t>(value * 32767.0F));
        return samples;
    }

    QTemporaryDir directory;
    SoxrAudioConverterFactory converters;
    PosixFileSystem files;
};

} // namespace

TEST_P(MicrophoneRecordingTest, monoMicrophone_leavesAFileOfWhatWasSaid) {
    recordTone(48000, 1);
}

TEST_P(MicrophoneRecordingTest, stereoMicrophone_leavesAMonoFile) {
    recordTone(48000, 2);
}

TEST_P(MicrophoneRecordingTest, microphoneAt44100_leavesAFileAt16000) {
    recordTone(44100, 1);
}

TEST_P(MicrophoneRecordingTest, serverThatDiesDuringTheRecording_leavesWhatWasSaidBefore) {
    startWithMicrophone();
    const auto voice = speak();
    PulseAudioInput input(connection());
    AudioRecorder recorder(input, converters, files, actor);
    recorder.start();
    voice->sayAndWait(tone(440, 1.0, 0.5, rate));
    server.kill();
    EXPECT_TRUE(becomes(AuthorizationStatus::Denied));
    const auto path = directory.filePath(QStringLiteral("recording.wav"));
    EXPECT_GT(recorder.stop(path), 0.5);
    EXPECT_NEAR(frequencyOf(spokenPart(samplesOf(*SndFileReader().open(path))), 16000), 440, 10);
}

INSTANTIATE_TEST_SUITE_P(, MicrophoneRecordingTest,
                         testing::Values(SoundServer::Kind::PulseAudio, SoundServer::Kind::PipeWire),
                         nameOfKind);
