// SPDX-License-Identifier: MIT
#include "linux/pulse/FrameAssembler.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace talvera {

namespace {

std::size_t bytesPerFrame(const AudioFormat& format) {
    const auto sample = format.sampleType == SampleType::Float32 ? sizeof(float) : sizeof(std::int16_t);
    return sample * static_cast<std::size_t>(std::max(format.channels, 1));
}

} // namespace

FrameAssembler::FrameAssembler(std::size_t bufferFrames, const AudioFormat& format, AudioEngine::Tap tap)
    : m_format(format)
    , m_tap(std::move(tap))
    , m_frameBytes(bytesPerFrame(format))
    , m_buffer(std::max<std::size_t>(bufferFrames, 1) * m_frameBytes) {}

void FrameAssembler::append(const void* data, std::size_t bytes) {
    const auto* from = static_cast<const std::byte*>(data);
    while (bytes > 0) {
        const auto taken = std::min(bytes, m_buffer.size() - m_filled);
        if (from) {
            std::memcpy(m_buffer.data() + m_filled, from, taken);
            from += taken;
        } else {
            std::memset(m_buffer.data() + m_filled, 0, taken);
        }
        m_filled += taken;
        bytes -= taken;
        if (m_filled == m_buffer.size())
            flush();
    }
}

void FrameAssembler::flush() {
    const auto frames = std::exchange(m_filled, 0) / m_frameBytes;
    if (frames > 0)
        m_tap({m_format, frames, m_buffer.data()});
}

} // namespace talvera
