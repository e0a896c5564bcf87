// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioConverter.h"

namespace talvera::test {

/// Takes the sample of the loudest channel that is nearest in time: exact where the rates are the same.
class FakeAudioConverter final : public AudioConverter {
public:
    FakeAudioConverter(const AudioFormat& from, const AudioFormat& to)
        : m_from(from)
        , m_to(to) {}

    std::optional<std::vector<std::int16_t>> convert(const AudioBuffer& buffer,
                                                     std::size_t capacity) override;

private:
    AudioFormat m_from;
    AudioFormat m_to;
    double m_position = 0; // of the next output sample, in input frames from the start of the next buffer
};

/// Makes them, unless told to refuse.
class FakeAudioConverterFactory final : public AudioConverterFactory {
public:
    std::unique_ptr<AudioConverter> make(const AudioFormat& from, const AudioFormat& to) override;

    bool refuses = false;         ///< no converter can be made
    bool conversionFails = false; ///< those made from now on fail at each buffer
    int made = 0;
};

} // namespace talvera::test
