// SPDX-License-Identifier: MIT
#include "FakeAudioConverter.h"

#include <algorithm>
#include <cstdlib>

namespace talvera::test {

namespace {

class FailingConverter final : public AudioConverter {
public:
    std::optional<std::vector<std::int16_t>> convert(const AudioBuffer&, std::size_t) override {
        return std::nullopt;
    }
};

std::int16_t sampleAt(const AudioBuffer& buffer, std::size_t frame, std::size_t channel) {
    const auto index = frame * static_cast<std::size_t>(buffer.format.channels) + channel;
    if (buffer.int16s() != nullptr)
        return buffer.int16s()[index];
    return static_cast<std::int16_t>(std::clamp(buffer.floats()[index], -1.0F, 1.0F) * 32767.0F);
}

/// That with the highest peak in this buffer.
std::size_t loudestChannel(const AudioBuffer& buffer) {
    std::size_t loudest = 0;
    int peak = -1;
    for (std::size_t channel = 0; channel < static_cast<std::size_t>(buffer.format.channels); ++channel) {
        for (std::size_t frame = 0; frame < buffer.frameLength; ++frame) {
            if (const auto sample = std::abs(sampleAt(buffer, frame, channel)); sample > peak) {
                peak = sample;
                loudest = channel;
            }
        }
    }
    return loudest;
}

} // namespace

std::optional<std::vector<std::int16_t>> FakeAudioConverter::convert(const AudioBuffer& buffer,
                                                                     std::size_t capacity) {
    if (buffer.format != m_from)
        return std::nullopt;
    const auto step = m_from.sampleRate / m_to.sampleRate;
    const auto frames = static_cast<double>(buffer.frameLength);
    const auto channel = loudestChannel(buffer);
    std::vector<std::int16_t> result;
    for (; m_position < frames && result.size() < capacity; m_position += step)
        result.push_back(sampleAt(buffer, static_cast<std::size_t>(m_position), channel));
    m_position -= frames;
    return result;
}

std::unique_ptr<AudioConverter> FakeAudioConverterFactory::make(const AudioFormat& from,
                                                                const AudioFormat& to) {
    if (refuses || from.sampleRate <= 0 || from.channels <= 0)
        return nullptr;
    ++made;
    if (conversionFails)
        return std::make_unique<FailingConverter>();
    return std::make_unique<FakeAudioConverter>(from, to);
}

} // namespace talvera::test
