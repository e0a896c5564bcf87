// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioEngine.h"
#include "text/wiping.h"

#include <cstddef>

namespace talvera {

/// Gathers captured sound, which comes in pieces of any size, into buffers of a fixed number of frames.
class FrameAssembler {
public:
    FrameAssembler(std::size_t bufferFrames, const AudioFormat& format, AudioEngine::Tap tap);

    const AudioFormat& format() const { return m_format; }

    /// Takes whole frames, and hands over every buffer that they fill. Null `data` is that much silence.
    void append(const void* data, std::size_t bytes);

    /// Hands over what has been gathered since the last full buffer.
    void flush();

    /// Forgets what has been gathered.
    void clear() { m_filled = 0; }

private:
    AudioFormat m_format;
    AudioEngine::Tap m_tap;
    std::size_t m_frameBytes;
    WipedVector<std::byte> m_buffer;
    std::size_t m_filled = 0; // bytes
};

} // namespace talvera
