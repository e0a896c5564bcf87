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

/// Of at least one value.
double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
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
    return periods.empty() ? 0 : sampleRate / medianOf(std::move(periods));
}

double levelOf(const std::vector<std::int16_t>& samples, double sampleRate) {
    const auto window = static_cast<std::ptrdiff_t>(sampleRate / 20);
    std::vector<double> levels;
    for (auto from = samples.begin(); samples.end() - from >= window; from += window) {
        const double energy = std::accumulate(
            from, from + window, 0.0, [](double sum, double sample) { return sum + sample * sample; });
        levels.push_back(std::sqrt(energy / static_cast<double>(window)));
    }
    return levels.empty() ? 0 : medianOf(std::move(levels));
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
