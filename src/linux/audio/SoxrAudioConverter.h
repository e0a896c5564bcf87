// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioConverter.h"

namespace talvera {

/// Makes converters from any rate and any number of channels to 16-bit mono: the loudest channel, resampled.
/// What the filter holds back at the end of a stream is under 5 ms for input rates from 44.1 kHz upward;
/// nothing at the same rate.
class SoxrAudioConverterFactory final : public AudioConverterFactory {
public:
    std::unique_ptr<AudioConverter> make(const AudioFormat& from, const AudioFormat& to) override;
};

} // namespace talvera
