// SPDX-License-Identifier: MIT
#include "FakeAudioConverter.h"
#include "linux/audio/SoxrAudioConverter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

using namespace talvera;
using namespace talvera::test;

namespace {

constexpr AudioFormat target{16000.0, 1, SampleType::Int16};

std::vector<float> tone(double frequency, double amplitude, double rate, int channels, double seconds) {
    std::vector<float> samples;
    const auto frames = static_cast<int>(rate * seconds);
    for (int frame = 0; frame < frames; ++frame) {
        const auto value = amplitude * std::sin(2 * std::numbers::pi * frequency * frame / rate);
        samples.insert(samples.end(), static_cast<std::size_t>(channels), static_cast<float>(value));
    }
    return samples;
}

/// Feeds the samples in buffers of the given lengths, over and over.
template <typename Sample>
std::vector<std::int16_t> converted(AudioConverter& converter, const AudioFormat& format,
                                    const std::vector<Sample>& samples,
                                    const std::vector<std::size_t>& lengths, std::size_t spare = 1024) {
    std::vector<std::int16_t> result;
    const auto channels = static_cast<std::size_t>(format.channels);
    const auto frames = samples.size() / channels;
    std::size_t next = 0;
    for (std::size_t first = 0; first < frames;) {
        const auto count = std::min(lengths[next++ % lengths.size()], frames - first);
        const auto capacity =
            static_cast<std::size_t>(16000.0 / format.sampleRate * static_cast<double>(count)) + spare;
        const auto piece = converter.convert({format, count, samples.data() + first * channels}, capacity);
        if (!piece) {
            ADD_FAILURE() << "not converted";
            return result;
        }
        EXPECT_LE(piece->size(), capacity);
        result.insert(result.end(), piece->begin(), piece->end());
        first += count;
    }
    return result;
}

template <typename Factory>
class AudioConverterContract : public testing::Test {
protected:
    Factory factory;
};

using Factories = testing::Types<FakeAudioConverterFactory, SoxrAudioConverterFactory>;
TYPED_TEST_SUITE(AudioConverterContract, Factories);

TYPED_TEST(AudioConverterContract, sameRate_passesTheSamplesThrough) {
    const auto converter = this->factory.make(target, target);
    std::vector<std::int16_t> samples;
    for (int i = -32768; i < 32768; ++i)
        samples.push_back(static_cast<std::int16_t>(i));
    EXPECT_EQ(converted(*converter, target, samples, {4096}), samples);
}

TYPED_TEST(AudioConverterContract, steadySoundAt48k_comesOutSteadyAndAThirdAsLong) {
    const AudioFormat format{48000.0, 2, SampleType::Float32};
    const auto converter = this->factory.make(format, target);
    const auto result = converted(*converter, format, std::vector<float>(96000, 0.5F), {4096});
    EXPECT_NEAR(static_cast<double>(result.size()), 16000.0, 80.0);
    for (std::size_t i = 1000; i < result.size(); ++i)
        ASSERT_NEAR(result[i], 16384, 8);
}

TYPED_TEST(AudioConverterContract, noDevice_hasNoConverter) {
    EXPECT_EQ(this->factory.make({}, target), nullptr);
    EXPECT_EQ(this->factory.make({48000.0, 0, SampleType::Float32}, target), nullptr);
    EXPECT_EQ(this->factory.make({0.0, 2, SampleType::Float32}, target), nullptr);
}

TYPED_TEST(AudioConverterContract, bufferOfAnotherFormat_failsAlone) {
    const AudioFormat format{48000.0, 1, SampleType::Int16};
    const auto converter = this->factory.make(format, target);
    const std::vector<std::int16_t> samples(480, 1000);
    EXPECT_EQ(converter->convert({{44100.0, 1, SampleType::Int16}, 480, samples.data()}, 2000), std::nullopt);
    EXPECT_NE(converter->convert({format, 480, samples.data()}, 2000), std::nullopt);
}

TYPED_TEST(AudioConverterContract, bufferWithoutFrames_yieldsNothingAndChangesNothing) {
    const AudioFormat format{48000.0, 1, SampleType::Float32};
    const auto converter = this->factory.make(format, target);
    const auto piece = converter->convert({format, 0, nullptr}, 1024);
    ASSERT_TRUE(piece);
    EXPECT_TRUE(piece->empty());
    const auto result = converted(*converter, format, std::vector<float>(48000, 0.5F), {4096});
    EXPECT_NEAR(static_cast<double>(result.size()), 16000.0, 80.0);
}

/// What the converter makes of a tone that each channel has at its own amplitude.
template <typename Factory>
int peakOf(Factory& factory, const std::vector<float>& amplitudes) {
    const AudioFormat format{48000.0, static_cast<int>(amplitudes.size()), SampleType::Float32};
    std::vector<float> samples;
    for (const auto value : tone(440.0, 1.0, format.sampleRate, 1, 1.0)) {
        for (const auto amplitude : amplitudes)
            samples.push_back(value * amplitude);
    }
    const auto converter = factory.make(format, target);
    const auto result = converted(*converter, format, samples, {4096});
    return *std::max_element(result.begin() + 1000, result.end());
}

TYPED_TEST(AudioConverterContract, secondMicrophoneUpsideDown_doesNotCancelTheFirst) {
    EXPECT_NEAR(peakOf(this->factory, {0.5F, -0.5F}), 16384, 200);
}

TYPED_TEST(AudioConverterContract, oneInputOfMany_isHeardAtItsFullLoudness) {
    EXPECT_NEAR(peakOf(this->factory, {0.5F, 0, 0, 0, 0, 0, 0, 0}), 16384, 200);
    EXPECT_NEAR(peakOf(this->factory, {0, 0, 0, 0, 0, 0.5F, 0, 0}), 16384, 200);
    EXPECT_NEAR(peakOf(this->factory, {0.01F, 0.5F}), 16384, 200);
}

struct Fit {
    double amplitude; // of 32768
    double worstError;
};

/// The sine of this frequency that fits best, and how far a sample strays from it: a click at a seam would
/// show.
Fit fitSine(const std::vector<std::int16_t>& samples, double frequency) {
    double sine = 0;
    double cosine = 0;
    const std::size_t first = 800; // the filter's run-in
    const auto phase = [&](std::size_t i) {
        return 2 * std::numbers::pi * frequency * static_cast<double>(i) / 16000.0;
    };
    // Whole periods, so that sine and cosine are independent.
    const auto period = static_cast<std::size_t>(16000);
    const auto count = (samples.size() - first) / period * period;
    for (std::size_t i = first; i < first + count; ++i) {
        sine += samples[i] * std::sin(phase(i));
        cosine += samples[i] * std::cos(phase(i));
    }
    sine *= 2.0 / static_cast<double>(count);
    cosine *= 2.0 / static_cast<double>(count);
    double worst = 0;
    for (std::size_t i = first; i < samples.size(); ++i)
        worst =
            std::max(worst, std::abs(samples[i] - sine * std::sin(phase(i)) - cosine * std::cos(phase(i))));
    return {std::hypot(sine, cosine), worst};
}

struct Device {
    double rate;
    int channels;
};

class DeviceFormats : public testing::TestWithParam<Device> {};

TEST_P(DeviceFormats, toneThroughUnevenBuffers_keepsPitchAndLoudnessWithoutClicks) {
    const AudioFormat format{GetParam().rate, GetParam().channels, SampleType::Float32};
    SoxrAudioConverterFactory factory;
    const auto converter = factory.make(format, target);
    ASSERT_TRUE(converter);
    const auto samples = tone(440.0, 0.5, format.sampleRate, format.channels, 2.5);
    const auto result = converted(*converter, format, samples, {4096, 1, 441, 3000, 7});
    const auto fit = fitSine(result, 440.0);
    EXPECT_NEAR(fit.amplitude, 16384.0, 16384 * 0.005);
    EXPECT_LT(fit.worstError, 12.0);
}

TEST_P(DeviceFormats, theEndOfTheLastWord_isHeldBackForUnderFiveMilliseconds) {
    const AudioFormat format{GetParam().rate, GetParam().channels, SampleType::Float32};
    SoxrAudioConverterFactory factory;
    double worst = 0;
    for (std::size_t frames = 20000; frames < 22000; frames += 167) {
        const auto converter = factory.make(format, target);
        const std::vector<float> samples(frames * static_cast<std::size_t>(format.channels), 0.1F);
        const auto result = converted(*converter, format, samples, {4096});
        const auto all = static_cast<double>(frames) * 16000.0 / format.sampleRate;
        worst = std::max(worst, (all - static_cast<double>(result.size())) / 16.0);
    }
    RecordProperty("worst_ms", std::to_string(worst));
    // A filter is as long in time as its rate is slow; the slow ones are telephones and headsets.
    EXPECT_LT(worst, format.sampleRate >= 44100 || format.sampleRate == 16000 ? 5.0 : 14.0);
}

INSTANTIATE_TEST_SUITE_P(SoxrAudioConverter, DeviceFormats,
                         testing::Values(Device{8000, 1}, Device{16000, 2}, Device{32000, 1},
                                         Device{44100, 1}, Device{44100, 2}, Device{48000, 1},
                                         Device{48000, 2}, Device{48000, 6}, Device{96000, 2},
                                         Device{192000, 2}),
                         [](const auto& test) {
                             return std::to_string(static_cast<int>(test.param.rate)) + "Hz" +
                                    std::to_string(test.param.channels) + "Channels";
                         });

TEST(SoxrAudioConverter, channelThatIsALittleLouder_doesNotTakeOver) {
    const AudioFormat format{16000.0, 2, SampleType::Int16};
    SoxrAudioConverterFactory factory;
    const auto converter = factory.make(format, target);
    std::vector<std::int16_t> samples;
    for (int i = 0; i < 1000; ++i) {
        samples.push_back(5000);
        samples.push_back(-9000);
    }
    EXPECT_EQ(converted(*converter, format, samples, {100}), std::vector<std::int16_t>(1000, 5000));
}

TEST(SoxrAudioConverter, speakerWhoTurnsToTheOtherMicrophone_isFollowed) {
    const AudioFormat format{16000.0, 2, SampleType::Int16};
    SoxrAudioConverterFactory factory;
    const auto converter = factory.make(format, target);
    std::vector<std::int16_t> samples;
    for (int i = 0; i < 64000; ++i) {
        const bool atFirst = i < 32000;
        samples.push_back(atFirst ? 8000 : 100);
        samples.push_back(atFirst ? 100 : -8000);
    }
    const auto result = converted(*converter, format, samples, {4096});
    EXPECT_EQ(result.front(), 8000);
    EXPECT_EQ(result.back(), -8000);
}

TEST(SoxrAudioConverter, whatTheTargetCantHold_isKeptOut) {
    const AudioFormat format{48000.0, 1, SampleType::Float32};
    SoxrAudioConverterFactory factory;
    const auto loudnessOf = [&](double frequency) {
        const auto converter = factory.make(format, target);
        const auto result = converted(*converter, format, tone(frequency, 0.9, 48000, 1, 1.0), {4096});
        return *std::max_element(result.begin() + 1000, result.end());
    };
    EXPECT_GT(loudnessOf(6000), 29000);
    EXPECT_LT(loudnessOf(9000), 3);
    EXPECT_LT(loudnessOf(12000), 3);
    EXPECT_LT(loudnessOf(15500), 3);
}

TEST(SoxrAudioConverter, silence_staysSilent) {
    const AudioFormat format{44100.0, 2, SampleType::Float32};
    SoxrAudioConverterFactory factory;
    const auto converter = factory.make(format, target);
    const auto result = converted(*converter, format, std::vector<float>(88200), {4096});
    EXPECT_EQ(std::count(result.begin(), result.end(), 0), static_cast<std::ptrdiff_t>(result.size()));
}

TEST(SoxrAudioConverter, tooLoudSound_isLimitedAndNeverWrapsRound) {
    const AudioFormat format{48000.0, 1, SampleType::Float32};
    SoxrAudioConverterFactory factory;
    const auto converter = factory.make(format, target);
    const auto result = converted(*converter, format, std::vector<float>(48000, 3.0F), {4096});
    EXPECT_EQ(*std::min_element(result.begin() + 1000, result.end()), 32767);
}

TEST(SoxrAudioConverter, nonsenseFromTheDevice_spoilsOnlyItself) {
    const AudioFormat format{48000.0, 1, SampleType::Float32};
    SoxrAudioConverterFactory factory;
    const auto converter = factory.make(format, target);
    auto samples = tone(440.0, 0.5, 48000, 1, 1.0);
    for (std::size_t i = 4000; i < 4010; ++i)
        samples[i] = i % 2 == 0 ? std::nanf("") : INFINITY;
    const auto result = converted(*converter, format, samples, {4096});
    const auto clean = factory.make(format, target);
    const auto expected = converted(*clean, format, tone(440.0, 0.5, 48000, 1, 1.0), {4096});
    ASSERT_EQ(result.size(), expected.size());
    for (std::size_t i = 2000; i < result.size(); ++i)
        ASSERT_NEAR(result[i], expected[i], 1);
}

TEST(SoxrAudioConverter, roomThatIsTooSmall_delaysSamplesAndLosesNone) {
    const AudioFormat format{48000.0, 1, SampleType::Float32};
    SoxrAudioConverterFactory factory;
    const auto samples = tone(440.0, 0.5, 48000, 1, 1.0);
    const auto roomy = factory.make(format, target);
    const auto expected = converted(*roomy, format, samples, {480});
    const auto tight = factory.make(format, target);
    std::vector<std::int16_t> result;
    for (std::size_t first = 0; first < samples.size(); first += 480) {
        const auto piece = tight->convert({format, 480, samples.data() + first}, 150);
        ASSERT_TRUE(piece);
        ASSERT_LE(piece->size(), 150U);
        result.insert(result.end(), piece->begin(), piece->end());
    }
    const float nothing = 0;
    while (result.size() < expected.size()) {
        const auto piece = tight->convert({format, 0, &nothing}, 150);
        ASSERT_TRUE(piece);
        ASSERT_FALSE(piece->empty());
        result.insert(result.end(), piece->begin(), piece->end());
    }
    EXPECT_EQ(result, expected);
}

TEST(SoxrAudioConverter, targetsThatItCantMake_haveNoConverter) {
    SoxrAudioConverterFactory factory;
    const AudioFormat from{48000.0, 1, SampleType::Float32};
    EXPECT_EQ(factory.make(from, {16000.0, 2, SampleType::Int16}), nullptr);
    EXPECT_EQ(factory.make(from, {16000.0, 1, SampleType::Float32}), nullptr);
    EXPECT_EQ(factory.make(from, {}), nullptr);
    EXPECT_EQ(factory.make({std::nan(""), 1, SampleType::Float32}, target), nullptr);
    EXPECT_EQ(factory.make({-48000.0, 1, SampleType::Float32}, target), nullptr);
}

} // namespace
