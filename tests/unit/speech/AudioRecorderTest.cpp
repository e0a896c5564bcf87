// SPDX-License-Identifier: MIT
#include "speech/AudioRecorder.h"

#include "FakeAudioConverter.h"
#include "FakeAudioEngine.h"
#include "FakeFileSystem.h"
#include "SimulatedMainActor.h"
#include "speech/WavWriter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <mutex>
#include <thread>

using namespace talvera;
using namespace talvera::test;

namespace {

const auto path = QStringLiteral("/tmp/a.wav");

class AudioRecorderTest : public testing::Test {
protected:
    using Samples = std::vector<std::int16_t>;

    void deliver(const Samples& samples) { engine.deliver(samples); }

    SimulatedMainActor actor;
    FakeFileSystem files;
    FakeAudioEngine engine;
    FakeAudioConverterFactory converters;
    AudioRecorder recorder{engine, converters, files, actor};
};

TEST_F(AudioRecorderTest, stopWithoutStart_givesZeroAndNoFile) {
    EXPECT_EQ(recorder.stop(path), 0.0);
    EXPECT_TRUE(files.files().isEmpty());
}

TEST_F(AudioRecorderTest, stopStraightAfterStart_writesAHeaderAlone) {
    recorder.start();
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(recorder.stop(path), 0.0);
    EXPECT_EQ(files.size(path), 44);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_FALSE(engine.hasTap());
    EXPECT_FALSE(engine.isRunning());
}

TEST_F(AudioRecorderTest, recording_isWrittenSampleBySample) {
    Samples samples;
    for (int i = 0; i < 20000; ++i)
        samples.push_back(static_cast<std::int16_t>(i));
    recorder.start();
    deliver(samples);
    EXPECT_EQ(recorder.stop(path), 1.25);
    EXPECT_EQ(files.read(path), wavBytes(samples, 16000));
}

TEST_F(AudioRecorderTest, pureSilence_isWrittenWhole) {
    recorder.start();
    deliver(Samples(32000, 600));
    EXPECT_EQ(recorder.stop(path), 2.0);
    EXPECT_EQ(files.size(path), 44 + 64000);
}

TEST_F(AudioRecorderTest, trailingSilence_isTrimmedAndNotCounted) {
    recorder.start();
    deliver(Samples(16000, 5000));
    deliver(Samples(9601, 0));
    EXPECT_EQ(recorder.stop(path), 1.2);
}

TEST_F(AudioRecorderTest, settledSamples_goToTheLastLoudOne) {
    EXPECT_EQ(recorder.settledSamples(), 0U);
    recorder.start();
    deliver(Samples(16000, 600));
    EXPECT_EQ(recorder.settledSamples(), 0U) << "silence alone may end up trimmed or whole";
    deliver({601, 0, 0});
    EXPECT_EQ(recorder.settledSamples(), 16001U);
    deliver(Samples(20000, 0));
    EXPECT_EQ(recorder.settledSamples(), 16001U);
    deliver({-601});
    EXPECT_EQ(recorder.settledSamples(), 36004U);
    const auto copy = recorder.settledSamples(15999, 3);
    EXPECT_EQ(Samples(copy.begin(), copy.end()), Samples({600, 601, 0}));
    recorder.stop(path);
    EXPECT_EQ(recorder.settledSamples(), 0U);
}

TEST_F(AudioRecorderTest, secondStart_keepsWhatIsRecorded) {
    recorder.start();
    deliver(Samples(16000, 5000));
    recorder.start();
    deliver(Samples(16000, 5000));
    EXPECT_EQ(engine.taps, 1);
    EXPECT_EQ(recorder.stop(path), 2.0);
}

TEST_F(AudioRecorderTest, nextRecording_beginsEmpty) {
    recorder.start();
    deliver(Samples(16000, 5000));
    recorder.stop(path);
    recorder.start();
    deliver(Samples(8000, 5000));
    EXPECT_EQ(recorder.stop(path), 0.5);
}

TEST_F(AudioRecorderTest, stereoAt48k_becomesMonoAt16kAndTheLevelIsTheFirstChannels) {
    engine.format = {48000.0, 2, SampleType::Float32};
    std::vector<float> levels;
    recorder.setOnLevel([&](float level) { levels.push_back(level); });
    std::vector<float> sound;
    for (int i = 0; i < 48000; ++i) {
        sound.push_back(0.01F);
        sound.push_back(1.0F);
    }
    recorder.start();
    engine.deliver(sound);
    EXPECT_EQ(recorder.stop(path), 1.0);
    actor.settle();
    ASSERT_EQ(levels.size(), 12U); // 48000 frames in buffers of 4096
    for (const auto level : levels)
        EXPECT_NEAR(level, 0.35F, 1e-5F);
}

TEST_F(AudioRecorderTest, otherMicrophoneForTheNextRecording_isConvertedFromItsOwnRate) {
    recorder.start();
    deliver(Samples(16000, 5000));
    EXPECT_EQ(recorder.stop(path), 1.0);
    engine.format = {48000.0, 1, SampleType::Float32};
    recorder.start();
    engine.deliver(std::vector<float>(48000, 0.5F));
    EXPECT_EQ(recorder.stop(path), 1.0);
}

TEST_F(AudioRecorderTest, startThatTheEngineRefuses_throwsAndLeavesTheRecorderIdle) {
    engine.startFailure = PlatformError(AudioEngineFailure::NoInput, "no input");
    EXPECT_THROW(recorder.start(), PlatformError);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_TRUE(engine.hasTap());
    EXPECT_EQ(recorder.stop(path), 0.0);
    EXPECT_TRUE(files.files().isEmpty());

    engine.startFailure.reset();
    recorder.start();
    deliver(Samples(16000, 5000));
    EXPECT_EQ(recorder.stop(path), 1.0);
}

TEST_F(AudioRecorderTest, noConverter_recordsNothingButShowsLevels) {
    converters.refuses = true;
    int levels = 0;
    recorder.setOnLevel([&](float) { ++levels; });
    recorder.start();
    deliver(Samples(16000, 5000));
    EXPECT_EQ(recorder.stop(path), 0.0);
    actor.settle();
    EXPECT_EQ(files.size(path), 44);
    EXPECT_EQ(levels, 4);
}

TEST_F(AudioRecorderTest, converterThatCannotBeMadeAnyMore_isNotTheOneOfTheRecordingBefore) {
    recorder.start();
    deliver(Samples(16000, 5000));
    EXPECT_EQ(recorder.stop(path), 1.0);
    converters.refuses = true;
    recorder.start();
    deliver(Samples(16000, 5000));
    EXPECT_EQ(recorder.stop(path), 0.0);
    EXPECT_EQ(files.size(path), 44);
}

TEST_F(AudioRecorderTest, bufferThatCantBeConverted_isMissingFromTheFile) {
    recorder.start();
    deliver(Samples(16000, 5000));
    const Samples other(100, 5000);
    engine.deliver(AudioBuffer{{44100.0, 1, SampleType::Int16}, other.size(), other.data()});
    EXPECT_EQ(recorder.stop(path), 1.0);
}

TEST_F(AudioRecorderTest, fullDisk_throwsAndLeavesNoFile) {
    recorder.start();
    deliver(Samples(16000, 5000));
    files.setCapacity(100);
    EXPECT_THROW(recorder.stop(path), PlatformError);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_FALSE(engine.isRunning());
    EXPECT_FALSE(files.exists(path));
}

TEST_F(AudioRecorderTest, recordingAfterAFullDisk_hasNothingOfTheOneBefore) {
    recorder.start();
    deliver(Samples(16000, 5000));
    files.setCapacity(100);
    EXPECT_THROW(recorder.stop(path), PlatformError);
    files.setCapacity(1'000'000);
    recorder.start();
    deliver(Samples(8000, 5000));
    EXPECT_EQ(recorder.stop(path), 0.5);
}

TEST_F(AudioRecorderTest, level_arrivesOnTheMainThreadInALaterTurn) {
    std::vector<float> levels;
    recorder.setOnLevel([&](float level) { levels.push_back(level); });
    recorder.start();
    deliver(Samples(4096, 0));
    EXPECT_TRUE(levels.empty());
    recorder.stop(path);
    actor.settle(); // also after the stop
    EXPECT_EQ(levels, std::vector<float>{0.0F});
}

TEST_F(AudioRecorderTest, observerSetDuringARecording_hearsTheNextBuffer) {
    int levels = 0;
    recorder.start();
    deliver(Samples(4096, 0));
    recorder.setOnLevel([&](float) { ++levels; });
    actor.settle();
    EXPECT_EQ(levels, 0);
    deliver(Samples(4096, 0));
    actor.settle();
    EXPECT_EQ(levels, 1);
    recorder.setOnLevel(nullptr);
    deliver(Samples(4096, 0));
    actor.settle();
    EXPECT_EQ(levels, 1);
}

TEST_F(AudioRecorderTest, recorderThatGoesAwayWhileRecording_takesItsTapAlong) {
    {
        AudioRecorder other(engine, converters, files, actor);
        other.start();
    }
    EXPECT_FALSE(engine.hasTap());
    EXPECT_FALSE(engine.isRunning());
}

/// Delivers on a thread of its own for as long as a tap is installed, as a sound server does.
class ThreadedEngine final : public AudioEngine {
public:
    ~ThreadedEngine() override { removeTap(); }

    AudioFormat inputFormat() override { return {16000.0, 1, SampleType::Int16}; }
    void installTap(std::size_t frames, const AudioFormat& format, Tap tap) override {
        m_tapped = true;
        m_thread = std::thread([this, frames, format, tap = std::move(tap)] {
            const std::vector<std::int16_t> samples(frames, 5000);
            do {
                tap({format, frames, samples.data()});
                ++delivered;
            } while (m_tapped);
        });
    }
    void removeTap() override {
        m_tapped = false;
        if (m_thread.joinable())
            m_thread.join();
    }
    void start() override {}
    void stop() override {}
    void setOnLost(std::function<void()>) override {}

    std::atomic<int> delivered = 0;

private:
    std::atomic<bool> m_tapped = false;
    std::thread m_thread;
};

/// Collects what is posted, from any thread.
class PostCollector {
public:
    void post(std::function<void()> work) {
        const std::scoped_lock lock(m_mutex);
        m_posted.push_back(std::move(work));
    }
    std::size_t count() const {
        const std::scoped_lock lock(m_mutex);
        return m_posted.size();
    }

private:
    mutable std::mutex m_mutex;
    std::vector<std::function<void()>> m_posted;
};

class ThreadSafeActor final : public MainActor {
public:
    Instant now() const override { return {}; }
    WallTime date() const override { return {}; }
    void post(std::function<void()> work) override { posts.post(std::move(work)); }
    TimerId startTimer(Duration, std::function<void()>) override { return 0; }
    void cancelTimer(TimerId) override {}
    void block(const std::function<void()>& work) override { work(); }
    void blockFor(Duration) override {}

    PostCollector posts;
};

TEST(AudioRecorderThreads, everyBufferDelivered_isInTheFile) {
    ThreadSafeActor threadSafeActor;
    FakeFileSystem files;
    ThreadedEngine engine;
    FakeAudioConverterFactory converters;
    AudioRecorder recorder(engine, converters, files, threadSafeActor);
    for (int round = 0; round < 20; ++round) {
        engine.delivered = 0;
        recorder.setOnLevel(nullptr);
        recorder.start();
        while (engine.delivered < 3)
            std::this_thread::yield();
        recorder.setOnLevel([](float) {});
        while (engine.delivered < 6)
            std::this_thread::yield();
        const auto seconds = recorder.stop(path);
        EXPECT_EQ(seconds, engine.delivered * 4096 / 16000.0);
        EXPECT_EQ(files.size(path), 44 + engine.delivered * 8192);
    }
    EXPECT_GT(threadSafeActor.posts.count(), 0U);
}

TEST_F(AudioRecorderTest, microphoneThatGoesAway_isToldInALaterTurnOfTheMainThread) {
    int lost = 0;
    recorder.setOnLost([&] { ++lost; });
    recorder.start();
    deliver(Samples(16000, 5000));
    engine.lose();
    EXPECT_EQ(lost, 0);
    actor.settle();
    EXPECT_EQ(lost, 1);
    EXPECT_EQ(recorder.stop(path), 1.0) << "what had been said is kept";
}

TEST_F(AudioRecorderTest, microphoneThatGoesAwayAtTheEnd_isNoNews) {
    int lost = 0;
    recorder.setOnLost([&] { ++lost; });
    engine.lose();
    actor.settle();
    recorder.start();
    engine.lose();
    recorder.stop(path);
    actor.settle();
    EXPECT_EQ(lost, 0);
}

TEST_F(AudioRecorderTest, microphoneThatGoesAwayWithTheRecorder_tellsNobody) {
    {
        AudioRecorder other(engine, converters, files, actor);
        other.setOnLost([] { ADD_FAILURE() << "told"; });
        other.start();
        engine.lose();
    }
    actor.settle();
    engine.lose();
    actor.settle();
}

} // namespace
