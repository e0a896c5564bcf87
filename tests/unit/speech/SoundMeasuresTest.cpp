// SPDX-License-Identifier: MIT
#include "speech/SoundMeasures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

using namespace talvera;

namespace {

AudioBuffer bufferOf(const std::vector<float>& samples, int channels = 1) {
    return {{48000.0, channels, SampleType::Float32},
            samples.size() / static_cast<std::size_t>(channels),
            samples.data()};
}

AudioBuffer bufferOf(const std::vector<std::int16_t>& samples, int channels = 1) {
    return {{48000.0, channels, SampleType::Int16},
            samples.size() / static_cast<std::size_t>(channels),
            samples.data()};
}

TEST(InputLevel, bufferWithoutFrames_hasNone) {
    EXPECT_EQ(inputLevel(bufferOf(std::vector<float>{})), std::nullopt);
    EXPECT_EQ(inputLevel(bufferOf(std::vector<std::int16_t>{})), std::nullopt);
}

TEST(InputLevel, silence_isZero) {
    EXPECT_EQ(inputLevel(bufferOf(std::vector<float>(100))), 0.0F);
    EXPECT_EQ(inputLevel(bufferOf(std::vector<std::int16_t>(100))), 0.0F);
}

TEST(InputLevel, fullScaleSquareWave_isOne) {
    std::vector<float> floats(100);
    std::vector<std::int16_t> ints(100);
    for (std::size_t i = 0; i < 100; ++i) {
        floats[i] = i % 2 == 0 ? 1.0F : -1.0F;
        ints[i] = i % 2 == 0 ? 32767 : -32768;
    }
    EXPECT_EQ(inputLevel(bufferOf(floats)), 1.0F);
    EXPECT_EQ(inputLevel(bufferOf(ints)), 1.0F);
}

TEST(InputLevel, quietSound_isTheSquareRootOfItsAmplitudeTimesThreeAndAHalf) {
    EXPECT_NEAR(*inputLevel(bufferOf(std::vector<float>(4096, 0.01F))), 0.35F, 1e-5F);
    EXPECT_FLOAT_EQ(*inputLevel(bufferOf(std::vector<std::int16_t>(4096, 128))),
                    3.5F * std::sqrt(128.0F / 32768.0F));
}

TEST(InputLevel, onlyTheFirstChannel_counts) {
    EXPECT_EQ(inputLevel(bufferOf(std::vector<float>{0.0F, 1.0F, 0.0F, 1.0F}, 2)), 0.0F);
    EXPECT_FLOAT_EQ(*inputLevel(bufferOf(std::vector<float>{0.01F, 1.0F, 0.01F, 1.0F}, 2)), 0.35F);
}

TEST(InputLevel, nonsenseFromTheDevice_staysInRange) {
    for (const auto value : {std::nanf(""), INFINITY, -INFINITY, 1e30F}) {
        const auto level = inputLevel(bufferOf(std::vector<float>(10, value)));
        ASSERT_TRUE(level);
        EXPECT_TRUE(*level >= 0.0F && *level <= 1.0F) << *level;
    }
}

std::size_t kept(std::vector<std::int16_t> front, std::size_t quiet, std::int16_t quietSample = 0,
                 double rate = 16000.0) {
    front.insert(front.end(), quiet, quietSample);
    return trimTrailingSilence(front, rate).size();
}

TEST(LoudLength, loudLength_goesToTheEndOfTheLastLoudSample) {
    using Samples = std::vector<std::int16_t>;
    EXPECT_EQ(loudLength(Samples{}), 0U);
    EXPECT_EQ(loudLength(Samples{600, -600, 0}), 0U);
    EXPECT_EQ(loudLength(Samples{601}), 1U);
    EXPECT_EQ(loudLength(Samples{0, -601, 0, 601, 0, 600}), 4U);
}

TEST(LoudLength, whatIsBeforeItsEnd_staysWhateverComes) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        std::vector<std::int16_t> samples;
        const auto append = [&] {
            for (auto stretch = random() % 5; stretch > 0; --stretch)
                samples.insert(samples.end(), random() % 15000, random() % 2 == 0 ? 0 : 5000);
        };
        append();
        const auto settled = loudLength(samples);
        append();
        ASSERT_GE(trimTrailingSilence(samples, 16000.0).size(), settled) << "round " << round;
    }
}

TEST(TrimTrailingSilence, nothing_staysNothing) {
    EXPECT_EQ(kept({}, 0), 0U);
}

TEST(TrimTrailingSilence, pureSilence_isKeptWhole) {
    EXPECT_EQ(kept({}, 50000), 50000U);
    EXPECT_EQ(kept({}, 50000, 600), 50000U);
    EXPECT_EQ(kept({}, 50000, -600), 50000U);
}

TEST(TrimTrailingSilence, silenceOfUpToSixTenths_isKept) {
    EXPECT_EQ(kept({5000}, 9600), 9601U);
}

TEST(TrimTrailingSilence, longerSilence_isCutToTwoTenths) {
    EXPECT_EQ(kept({5000}, 9601), 3201U);
    EXPECT_EQ(kept({0, 0, 5000}, 100000), 3203U);
}

TEST(TrimTrailingSilence, sixHundred_isTheLoudestQuiet) {
    EXPECT_EQ(kept({601}, 20000, 600), 3201U);
    EXPECT_EQ(kept({-601}, 20000, -600), 3201U);
    EXPECT_EQ(kept({-32768}, 20000), 3201U);
}

TEST(TrimTrailingSilence, otherRates_countTheirOwnSamples) {
    EXPECT_EQ(kept({5000}, 4801, 0, 8000.0), 1601U);
    EXPECT_EQ(kept({5000}, 4800, 0, 8000.0), 4801U);
}

TEST(TrimTrailingSilence, silenceAtTheFront_isKept) {
    std::vector<std::int16_t> samples(100000, 0);
    samples.push_back(5000);
    EXPECT_EQ(trimTrailingSilence(samples, 16000.0).size(), samples.size());
}

} // namespace
