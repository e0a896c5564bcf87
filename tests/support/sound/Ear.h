// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioEngine.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace talvera::test {

/// What a tap has heard: the first channel, on the 16-bit scale. Any thread.
class Ear {
public:
    struct Heard {
        std::vector<std::int16_t> samples;
        std::vector<std::size_t> bufferLengths;
        AudioFormat format; ///< of the last buffer
        std::thread::id thread;
        std::chrono::steady_clock::time_point firstAt;

        double seconds() const { return static_cast<double>(samples.size()) / format.sampleRate; }
    };

    /// To be installed. The ear must outlive it.
    AudioEngine::Tap tap();

    Heard heard() const;

    /// Waits until `enough` holds; false after ten seconds. `enough` runs with the ear locked.
    bool waitUntil(const std::function<bool(const Heard&)>& enough);
    /// The same for that many frames, counted from the first of the recording.
    bool waitForFrames(std::size_t frames);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    Heard m_heard;
};

} // namespace talvera::test
