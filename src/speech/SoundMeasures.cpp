// SPDX-License-Identifier: MIT
#include "speech/SoundMeasures.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace talvera {

namespace {

constexpr float levelGain = 3.5F;
constexpr float int16Scale = 1.0F / 32768.0F;

constexpr int quietAmplitude = 600;
constexpr double longestKeptSilenceSeconds = 0.6;
constexpr double silenceLeftSeconds = 0.2;

bool isLoud(std::int16_t sample) {
    return std::abs(static_cast<int>(sample)) > quietAmplitude;
}

template <typename Sample>
float sumOfSquares(const Sample* samples, const AudioBuffer& buffer, float scale) {
    const auto stride = static_cast<std::size_t>(std::max(buffer.format.channels, 1));
    float sum = 0;
    for (std::size_t i = 0; i < buffer.frameLength; ++i) {
        const auto value = static_cast<float>(samples[i * stride]) * scale;
        sum += value * value;
    }
    return sum;
}

} // namespace

std::optional<float> inputLevel(const AudioBuffer& buffer) {
    if (buffer.frameLength == 0 || buffer.data == nullptr)
        return std::nullopt;
    const auto sum = buffer.floats() != nullptr ? sumOfSquares(buffer.floats(), buffer, 1.0F)
                                                : sumOfSquares(buffer.int16s(), buffer, int16Scale);
    const auto rms = std::sqrt(sum / static_cast<float>(buffer.frameLength));
    return std::max(0.0F, std::min(1.0F, std::sqrt(rms) * levelGain));
}

std::size_t loudLength(std::span<const std::int16_t> samples) {
    return static_cast<std::size_t>(samples.rend() - std::find_if(samples.rbegin(), samples.rend(), isLoud));
}

std::span<const std::int16_t> trimTrailingSilence(std::span<const std::int16_t> samples, double sampleRate) {
    const auto lastLoud = std::find_if(samples.rbegin(), samples.rend(), isLoud);
    if (lastLoud == samples.rend())
        return samples;
    const auto quiet = static_cast<std::size_t>(lastLoud - samples.rbegin());
    if (quiet <= static_cast<std::size_t>(sampleRate * longestKeptSilenceSeconds))
        return samples;
    const auto loudEnd = samples.size() - quiet;
    const auto kept = loudEnd + static_cast<std::size_t>(sampleRate * silenceLeftSeconds);
    return samples.first(std::min(kept, samples.size()));
}

} // namespace talvera
