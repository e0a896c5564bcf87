// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioBuffer.h"

#include <cstdint>

#include <pulse/sample.h>

namespace talvera {

/// The format in the sound server's terms.
inline pa_sample_spec specOf(const AudioFormat& format) {
    return {format.sampleType == SampleType::Float32 ? PA_SAMPLE_FLOAT32NE : PA_SAMPLE_S16NE,
            static_cast<std::uint32_t>(format.sampleRate), static_cast<std::uint8_t>(format.channels)};
}

} // namespace talvera
