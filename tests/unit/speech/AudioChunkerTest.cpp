// SPDX-License-Identifier: MIT
#include "speech/AudioChunker.h"

#include "FakeAudioFileReader.h"
#include "FakeFileSystem.h"
#include "platform/system/PlatformError.h"
#include "speech/WavWriter.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstddef>
#include <limits>
#include <new>
#include <span>
#include <vector>

using namespace talvera;
using namespace talvera::test;

namespace {

constexpr AudioChunker::Lengths lengths{25.0, 2.0, 28.0};
const auto wav = QStringLiteral("/tmp/talvera-1.wav");

std::vector<std::int16_t> ramp(std::size_t count) {
    std::vector<std::int16_t> samples(count);
    for (std::size_t i = 0; i < count; ++i)
        samples[i] = static_cast<std::int16_t>(i * 7);
    return samples;
}

class AudioChunkerTest : public testing::Test {
protected:
    void record(std::size_t frames) { writeWAV(files, ramp(frames), 16000, wav); }

    std::optional<std::vector<AudioChunker::Chunk>> split() {
        return AudioChunker::split(reader, files, wav, lengths);
    }

    FakeFileSystem files;
    FakeAudioFileReader reader{files};
};

TEST_F(AudioChunkerTest, twentyEightSeconds_areNotLongAndTouchNoFile) {
    record(448000);
    EXPECT_EQ(split(), std::nullopt);
    EXPECT_EQ(files.files(), QStringList{wav});
}

TEST_F(AudioChunkerTest, oneSampleMore_givesChunksAtZeroAndTwentyThree) {
    record(448001);
    const auto chunks = split();
    ASSERT_TRUE(chunks);
    ASSERT_EQ(chunks->size(), 2U);
    EXPECT_EQ(chunks->at(0).url, "/tmp/talvera-1-chunk0.wav");
    EXPECT_EQ(chunks->at(0).startSeconds, 0.0);
    EXPECT_EQ(chunks->at(0).durationSeconds, 25.0);
    EXPECT_EQ(chunks->at(1).url, "/tmp/talvera-1-chunk1.wav");
    EXPECT_EQ(chunks->at(1).startSeconds, 23.0);
    EXPECT_EQ(chunks->at(1).durationSeconds, 80001 / 16000.0);
}

TEST_F(AudioChunkerTest, chunkFiles_holdTheirPiecesOfTheRecording) {
    record(448001);
    const auto samples = ramp(448001);
    split();
    const std::span all(samples);
    EXPECT_EQ(files.read("/tmp/talvera-1-chunk0.wav"), wavBytes(all.subspan(0, 400000), 16000));
    EXPECT_EQ(files.read("/tmp/talvera-1-chunk1.wav"), wavBytes(all.subspan(368000), 16000));
}

TEST(AudioChunkerPlan, fortyEightSeconds_endWithTheSecondChunk) {
    const auto cuts = AudioChunker::plan(768000, 16000, lengths);
    ASSERT_TRUE(cuts);
    ASSERT_EQ(cuts->size(), 2U);
    EXPECT_EQ(cuts->at(0).first, 0);
    EXPECT_EQ(cuts->at(0).count, 400000);
    EXPECT_EQ(cuts->at(1).first, 368000);
    EXPECT_EQ(cuts->at(1).count, 400000);
}

TEST(AudioChunkerPlan, fortyEightAndAHalf_haveAShortThird) {
    const auto cuts = AudioChunker::plan(776000, 16000, lengths);
    ASSERT_TRUE(cuts);
    ASSERT_EQ(cuts->size(), 3U);
    EXPECT_EQ(cuts->at(2).startSeconds, 46.0);
    EXPECT_EQ(cuts->at(2).durationSeconds, 2.5);
}

TEST(AudioChunkerPlan, twentyEightAndAHalf_haveNoMinimumForTheLast) {
    const auto cuts = AudioChunker::plan(456000, 16000, lengths);
    ASSERT_TRUE(cuts);
    ASSERT_EQ(cuts->size(), 2U);
    EXPECT_EQ(cuts->at(1).startSeconds, 23.0);
    EXPECT_EQ(cuts->at(1).durationSeconds, 5.5);
}

TEST(AudioChunkerPlan, everyFrame_isInAChunk) {
    for (std::int64_t frames = 448001; frames < 2'000'000; frames += 3331) {
        const auto cuts = AudioChunker::plan(frames, 16000, lengths);
        ASSERT_TRUE(cuts);
        std::int64_t covered = 0;
        for (const auto& cut : *cuts) {
            ASSERT_LE(cut.first, covered);
            ASSERT_GT(cut.first + cut.count, covered);
            covered = cut.first + cut.count;
        }
        ASSERT_EQ(covered, frames);
    }
}

TEST(AudioChunkerPlan, absurdLengths_stillComeToAnEnd) {
    constexpr auto huge = std::numeric_limits<double>::infinity();
    EXPECT_EQ(AudioChunker::plan(0, 16000, lengths), std::nullopt);
    EXPECT_EQ(AudioChunker::plan(100, 0, {1, 0, huge}), std::nullopt);
    EXPECT_EQ(AudioChunker::plan(100, 10, {huge, 0, 1})->size(), 1U);
    EXPECT_EQ(AudioChunker::plan(100, 10, {1, 5, 1})->size(), 91U); // a step is at least one frame
    EXPECT_EQ(AudioChunker::plan(100, 10, {-1, -huge, 1})->size(), 100U);
    EXPECT_EQ(AudioChunker::plan(100, 10, {std::nan(""), std::nan(""), 1})->size(), 100U);
}

TEST_F(AudioChunkerTest, missingRecording_throws) {
    EXPECT_THROW(split(), PlatformError);
}

TEST_F(AudioChunkerTest, fullDiskAtTheSecondChunk_throwsAndTheFirstStays) {
    record(448001);
    files.setCapacity(*files.size(wav) + 800044 + 100);
    EXPECT_THROW(split(), PlatformError);
    EXPECT_EQ(files.files(), (QStringList{"/tmp/talvera-1-chunk0.wav", wav}));
}

TEST_F(AudioChunkerTest, cleanup_goesThroughTheWholeList) {
    record(448001);
    const auto chunks = split();
    files.failRemovals(chunks->at(0).url, EACCES);
    AudioChunker::cleanup(files, *chunks);
    EXPECT_EQ(files.files(), (QStringList{chunks->at(0).url, wav}));
}

/// A file that reads as the test says.
class GivenFile final : public AudioFile {
public:
    AudioFormat format{16000.0, 1, SampleType::Int16};
    std::vector<std::byte> bytes;
    bool outOfMemory = false;

    AudioFormat processingFormat() const override { return format; }
    std::int64_t length() const override { return 0; }
    std::vector<std::byte> readAll() override {
        if (outOfMemory)
            throw std::bad_alloc();
        return bytes;
    }

    template <typename Sample>
    void hold(const std::vector<Sample>& samples) {
        const auto view = std::as_bytes(std::span(samples));
        bytes.assign(view.begin(), view.end());
    }
};

TEST(ReadSamples, integers_areTakenAsTheyStand) {
    GivenFile file;
    EXPECT_TRUE(AudioChunker::readSamples(file).empty());
    file.hold<std::int16_t>({1, -32768, 32767});
    EXPECT_EQ(AudioChunker::readSamples(file), (std::vector<std::int16_t>{1, -32768, 32767}));
}

TEST(ReadSamples, onlyTheFirstChannel_isTaken) {
    GivenFile file;
    file.format.channels = 2;
    file.hold<std::int16_t>({1, 2, 3, 4, 5});
    EXPECT_EQ(AudioChunker::readSamples(file), (std::vector<std::int16_t>{1, 3}));
}

TEST(ReadSamples, floats_areLimitedScaledAndCut) {
    GivenFile file;
    file.format.sampleType = SampleType::Float32;
    file.hold<float>({0.0F, 1.0F, -1.0F, 2.0F, -2.0F, 0.5F, -0.5F});
    EXPECT_EQ(AudioChunker::readSamples(file),
              (std::vector<std::int16_t>{0, 32767, -32767, 32767, -32767, 16383, -16383}));
}

TEST(ReadSamples, floatsThatAreNoNumbers_areSilenceOrAsLoudAsCanBe) {
    GivenFile file;
    file.format.sampleType = SampleType::Float32;
    file.hold<float>({NAN, INFINITY, -INFINITY});
    EXPECT_EQ(AudioChunker::readSamples(file), (std::vector<std::int16_t>{0, 32767, -32767}));
}

void expectFailure(GivenFile& file, int code, const char* message) {
    try {
        AudioChunker::readSamples(file);
        ADD_FAILURE() << "no failure";
    } catch (const PlatformError& error) {
        EXPECT_EQ(error.domain(), "AudioChunker");
        EXPECT_EQ(error.code(), code);
        EXPECT_EQ(error.message(), message);
    }
}

TEST(ReadSamples, noMemory_isFailureOne) {
    GivenFile file;
    file.outOfMemory = true;
    expectFailure(file, 1, "Could not allocate PCM buffer");
}

TEST(ReadSamples, layoutWithoutChannels_isFailureTwo) {
    GivenFile file;
    file.format.channels = 0;
    expectFailure(file, 2, "Unsupported sample format");
}

} // namespace
