// SPDX-License-Identifier: MIT
#include "FakeAudioEngine.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace talvera::test {

namespace {
constexpr std::int16_t loudSample = 8000;
}

void FakeAudioEngine::installTap(std::size_t bufferFrames, const AudioFormat&, Tap tap) {
    m_bufferFrames = bufferFrames;
    m_tap = std::move(tap);
    ++taps;
}

void FakeAudioEngine::removeTap() {
    if (!m_tap)
        return;
    hear(secondsPerRecording);
    m_tap = nullptr;
}

void FakeAudioEngine::hear(double seconds) {
    if (seconds <= 0 || !m_running || m_isLost)
        return;
    const auto frames = static_cast<std::size_t>(std::llround(seconds * format.sampleRate));
    const auto count = frames * static_cast<std::size_t>(format.channels);
    if (format.sampleType == SampleType::Int16)
        deliver(std::vector<std::int16_t>(count, loudSample));
    else
        deliver(std::vector<float>(count, static_cast<float>(loudSample) / 32768.0F));
}

void FakeAudioEngine::loseAfter(double secondsHeard) {
    if (!m_running || m_isLost)
        return;
    hear(secondsHeard);
    m_isLost = true;
    if (onLost)
        onLost();
    lose();
}

void FakeAudioEngine::start() {
    if (startFailure)
        throw *startFailure;
    m_running = true;
    m_isLost = false;
    m_framesHeard = 0;
    ++starts;
}

void FakeAudioEngine::stop() {
    m_running = false;
}

void FakeAudioEngine::deliver(const std::vector<float>& samples) {
    deliverInBuffers(samples);
}

void FakeAudioEngine::deliver(const std::vector<std::int16_t>& samples) {
    deliverInBuffers(samples);
}

void FakeAudioEngine::deliver(const AudioBuffer& buffer) {
    if (!m_running || !m_tap)
        return;
    m_framesHeard += buffer.frameLength;
    m_tap(buffer);
}

template <typename Sample>
void FakeAudioEngine::deliverInBuffers(const std::vector<Sample>& samples) {
    const auto channels = static_cast<std::size_t>(format.channels);
    const auto frames = samples.size() / channels;
    for (std::size_t first = 0; first < frames; first += m_bufferFrames) {
        AudioBuffer buffer;
        buffer.format = format;
        buffer.frameLength = std::min(m_bufferFrames, frames - first);
        buffer.data = samples.data() + first * channels;
        deliver(buffer);
    }
}

} // namespace talvera::test
