// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace talvera {

enum class SampleType { Float32, Int16 };

/// How sound is laid out: frames of interleaved channels.
struct AudioFormat {
    double sampleRate = 0; ///< frames per second
    int channels = 0;
    SampleType sampleType = SampleType::Float32;

    bool operator==(const AudioFormat&) const = default;
};

/// A view of captured sound; valid for the length of the call that hands it over.
struct AudioBuffer {
    AudioFormat format;
    std::size_t frameLength = 0;
    const void* data = nullptr; ///< frameLength * channels samples of the format's type

    const float* floats() const {
        return format.sampleType == SampleType::Float32 ? static_cast<const float*>(data) : nullptr;
    }
    const std::int16_t* int16s() const {
        return format.sampleType == SampleType::Int16 ? static_cast<const std::int16_t*>(data) : nullptr;
    }
};

} // namespace talvera
