// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace talvera::test {

/// Nothing but silence and the faint noise of conversions.
bool isSilent(const std::vector<std::int16_t>& samples);

/// The stretch from the first to the last sample that isn't silence.
std::vector<std::int16_t> spokenPart(const std::vector<std::int16_t>& samples);

/// The pitch of a sine, in hertz.
double frequencyOf(const std::vector<std::int16_t>& samples, double sampleRate);

/// The root of the mean square, on the 16-bit scale, as most stretches of 50 ms have it: the server of a busy
/// machine may put a moment of silence where it was late, which says nothing about the level.
double levelOf(const std::vector<std::int16_t>& samples, double sampleRate);

/// `seconds` of a sine; an amplitude of 1 is full scale.
std::vector<std::int16_t> tone(double hertz, double seconds, double amplitude, double rate);

} // namespace talvera::test
