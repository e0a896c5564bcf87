// SPDX-License-Identifier: MIT
#include "Ear.h"

#include <cmath>

namespace talvera::test {

using namespace std::chrono_literals;

AudioEngine::Tap Ear::tap() {
    return [this](const AudioBuffer& buffer) {
        const std::scoped_lock lock(m_mutex);
        if (m_heard.samples.empty())
            m_heard.firstAt = std::chrono::steady_clock::now();
        m_heard.format = buffer.format;
        m_heard.thread = std::this_thread::get_id();
        m_heard.bufferLengths.push_back(buffer.frameLength);
        const auto channels = static_cast<std::size_t>(buffer.format.channels);
        for (std::size_t sample = 0; sample < buffer.frameLength * channels; sample += channels) {
            m_heard.samples.push_back(
                buffer.floats() ? static_cast<std::int16_t>(std::lround(buffer.floats()[sample] * 32768.0F))
                                : buffer.int16s()[sample]);
        }
        m_changed.notify_all();
    };
}

Ear::Heard Ear::heard() const {
    const std::scoped_lock lock(m_mutex);
    return m_heard;
}

bool Ear::waitUntil(const std::function<bool(const Heard&)>& enough) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, 10s, [&] { return enough(m_heard); });
}

bool Ear::waitForFrames(std::size_t frames) {
    return waitUntil([frames](const Heard& heard) { return heard.samples.size() >= frames; });
}

} // namespace talvera::test
