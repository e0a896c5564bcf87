// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioBuffer.h"

#include <memory>
#include <optional>
#include <vector>

namespace talvera {

/// Converts a stream of buffers to 16-bit mono at one rate: of several channels the loudest, since they may
/// be microphones that cancel each other. The filter's state is kept between the buffers.
class AudioConverter {
public:
    virtual ~AudioConverter() = default;

    /// The samples that this buffer yields, at most `capacity`; nothing when the conversion failed.
    virtual std::optional<std::vector<std::int16_t>> convert(const AudioBuffer& buffer,
                                                             std::size_t capacity) = 0;
};

/// Makes converters.
class AudioConverterFactory {
public:
    virtual ~AudioConverterFactory() = default;

    /// Null when no converter can be made between the two.
    virtual std::unique_ptr<AudioConverter> make(const AudioFormat& from, const AudioFormat& to) = 0;
};

} // namespace talvera
