// SPDX-License-Identifier: MIT
#pragma once

#include "platform/AudioBuffer.h"

#include <functional>

namespace talvera {

/// Captures from the system's default input device. Main thread only, apart from the tap's callback.
class AudioEngine {
public:
    /// Called on the engine's own thread, in order.
    using Tap = std::function<void(const AudioBuffer&)>;

    virtual ~AudioEngine() = default;

    /// The device's own format at this moment; all zero when there is no device.
    virtual AudioFormat inputFormat() = 0;

    /// Hands captured sound to `tap` in buffers of `bufferFrames` frames of `format`; the last one before
    /// removeTap() returns may be shorter. Replaces a tap that is installed.
    virtual void installTap(std::size_t bufferFrames, const AudioFormat& format, Tap tap) = 0;

    /// Delivers what had been spoken up to this call, at most some tens of milliseconds later, then takes the
    /// tap away: when it returns, the callback is not running and won't run again.
    virtual void removeTap() = 0;

    /// Starts the capture. Throws PlatformError (domain "AudioEngine") when the sound server refuses, has no
    /// input or doesn't answer within a second.
    virtual void start() = 0;

    virtual void stop() = 0;
};

} // namespace talvera
