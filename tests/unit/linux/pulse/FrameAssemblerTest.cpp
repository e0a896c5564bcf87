// SPDX-License-Identifier: MIT
#include "linux/pulse/FrameAssembler.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

using namespace talvera;

namespace {

class FrameAssemblerTest : public testing::Test {
protected:
    FrameAssembler assembler(std::size_t bufferFrames, const AudioFormat& format) {
        return {bufferFrames, format, [this](const AudioBuffer& buffer) {
                    lengths.push_back(buffer.frameLength);
                    const auto count = buffer.frameLength * static_cast<std::size_t>(buffer.format.channels);
                    if (const auto* const samples = buffer.int16s())
                        heard.insert(heard.end(), samples, samples + count);
                }};
    }

    static std::vector<std::int16_t> counted(std::size_t count) {
        std::vector<std::int16_t> samples(count);
        std::iota(samples.begin(), samples.end(), std::int16_t{1});
        return samples;
    }

    const AudioFormat mono{16000, 1, SampleType::Int16};
    const AudioFormat stereo{16000, 2, SampleType::Int16};
    std::vector<std::size_t> lengths;
    std::vector<std::int16_t> heard;
};

} // namespace

TEST_F(FrameAssemblerTest, piecesOfAnySize_becomeBuffersOfTheAskedLength) {
    auto assembled = assembler(8, stereo);
    const auto samples = counted(2 * 27);
    std::size_t next = 0;
    for (const std::size_t frames : {1U, 2U, 20U, 4U}) {
        assembled.append(samples.data() + next, frames * 4);
        next += frames * 2;
    }
    assembled.flush();

    EXPECT_EQ(lengths, (std::vector<std::size_t>{8, 8, 8, 3}));
    EXPECT_EQ(heard, samples);
}

TEST_F(FrameAssemblerTest, flushWithNothingGathered_handsOverNothing) {
    auto assembled = assembler(4, mono);
    assembled.flush();
    const auto samples = counted(4);
    assembled.append(samples.data(), 8);
    assembled.flush();

    EXPECT_EQ(lengths, std::vector<std::size_t>{4});
}

TEST_F(FrameAssemblerTest, holeInTheSound_becomesSilenceOfItsLength) {
    auto assembled = assembler(4, mono);
    const auto samples = counted(3);
    assembled.append(samples.data(), 4);
    assembled.append(nullptr, 6);
    assembled.append(samples.data(), 2);
    assembled.flush();

    EXPECT_EQ(heard, (std::vector<std::int16_t>{1, 2, 0, 0, 0, 1}));
}

TEST_F(FrameAssemblerTest, clear_forgetsWhatWasGathered) {
    auto assembled = assembler(4, mono);
    const auto samples = counted(3);
    assembled.append(samples.data(), 6);
    assembled.clear();
    assembled.append(samples.data(), 2);
    assembled.flush();

    EXPECT_EQ(heard, std::vector<std::int16_t>{1});
}

TEST_F(FrameAssemblerTest, buffersOfNoFramesOrFormatOfNoChannels_areTakenAsOne) {
    auto assembled = assembler(0, {0, 0, SampleType::Int16});
    const auto samples = counted(2);
    assembled.append(samples.data(), 4);

    EXPECT_EQ(lengths, (std::vector<std::size_t>{1, 1}));
}
