// SPDX-License-Identifier: MIT
#include "listening.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <numeric>

namespace talvera::test {

namespace {

bool isLoud(std::int16_t sample) {
    return std::abs(sample) > 100;
}

} // namespace

bool isSilent(const std::vector<std::int16_t>& samples) {
    return std::none_of(samples.begin(), samples.end(), isLoud);
}

/// The stretch from the first to the last sample that isn't silence.
std::vector<std::int16_t> spokenPart(const std::vector<std::int16_t>& samples) {
    const auto first = std::find_if(samples.begin(), samples.end(), isLoud);
    const auto last = std::find_if(samples.rbegin(), samples.rend(), isLoud).base();
    return first < last ? std::vector(first, last) : std::vector<std::int16_t>{};
}

double frequencyOf(const std::vector<std::int16_t>& samples, double sampleRate) {
    std::vector<double> periods;
    double lastRising = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        if (samples[i - 1] >= 0 || samples[i] < 0)
            continue;
        const double before = samples[i - 1];
        const double rising = static_cast<double>(i) - samples[i] / (samples[i] - before);
        if (lastRising > 0)
            periods.push_back(rising - lastRising);
        lastRising = rising;
    }
    if (periods.empty())
        return 0;
    const auto middle = periods.begin() + static_cast<std::ptrdiff_t>(periods.size() / 2);
    std::nth_element(periods.begin(), middle, periods.end());
    return sampleRate / *middle;
}

double rmsOf(const std::vector<std::int16_t>& samples) {
    const double energy = std::accumulate(samples.begin(), samples.end(), 0.0,
                                          [](double sum, double sample) { return sum + sample * sample; });
    return std::sqrt(energy / static_cast<double>(samples.size()));
}

std::vector<std::int16_t> tone(double hertz, double seconds, double amplitude, double rate) {
    std::vector<std::int16_t> samples(static_cast<std::size_t>(std::llround(seconds * rate)));
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto phase = 2 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
        samples[i] = static_cast<std::int16_t>(std::lround(32767 * amplitude * std::sin(phase)));
    }
    return samples;
}

} // namespace talvera::test
