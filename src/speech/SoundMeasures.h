// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioBuffer.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace talvera {

/// How loud the buffer's first channel is, from 0 to 1: the square root of its RMS amplitude, times 3.5.
/// Nothing for a buffer without frames.
std::optional<float> inputLevel(const AudioBuffer& buffer);

/// How many of the samples come before the end of the last loud one. Trimming leaves them all, whatever is
/// said after them.
std::size_t loudLength(std::span<const std::int16_t> samples);

/// The recording without a long silence at its end: the front part that ends 0.2 seconds behind the last loud
/// sample. Silence of at most 0.6 seconds stays, and so does a recording without a loud sample.
std::span<const std::int16_t> trimTrailingSilence(std::span<const std::int16_t> samples, double sampleRate);

} // namespace talvera
