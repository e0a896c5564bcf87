// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioEngine.h"
#include "platform/system/PlatformError.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace talvera::test {

/// A microphone that hears what the test delivers, on the test's own thread.
class FakeAudioEngine final : public AudioEngine {
public:
    AudioFormat inputFormat() override { return format; }
    void installTap(std::size_t bufferFrames, const AudioFormat& tapFormat, Tap tap) override;
    void removeTap() override;
    void start() override;
    void stop() override;
    void setOnLost(std::function<void()> lost) override { m_onLost = std::move(lost); }

    /// The device goes away.
    void lose() const {
        if (m_onLost)
            m_onLost();
    }

    /// The device goes away in the middle of a recording, of which it has heard so much by then.
    void loseAfter(double secondsHeard);

    /// So many seconds of loud sound come now, while the recording goes on.
    void hear(double seconds);

    /// What the last recording has heard, in seconds.
    double heardSeconds() const { return static_cast<double>(m_framesHeard) / format.sampleRate; }

    /// Hands the tap these interleaved samples, in buffers as long as it asked for; without a capture they
    /// are lost.
    void deliver(const std::vector<float>& samples);
    void deliver(const std::vector<std::int16_t>& samples);

    /// One buffer as it is.
    void deliver(const AudioBuffer& buffer);

    /// Called when the device goes away during a recording.
    std::function<void()> onLost;

    bool hasTap() const { return static_cast<bool>(m_tap); }
    bool isRunning() const { return m_running; }

    AudioFormat format{16000.0, 1, SampleType::Int16};
    std::optional<PlatformError> startFailure; ///< every start fails with it
    double secondsPerRecording = 0;            ///< so much loud sound comes out when the tap is taken away
    int taps = 0;                              ///< how often a tap was installed
    int starts = 0;                            ///< how often a capture began

private:
    template <typename Sample>
    void deliverInBuffers(const std::vector<Sample>& samples);

    Tap m_tap;
    std::function<void()> m_onLost;
    std::size_t m_bufferFrames = 0;
    std::size_t m_framesHeard = 0;
    bool m_running = false;
    bool m_isLost = false;
};

} // namespace talvera::test
