// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioBuffer.h"

#include <QString>

#include <functional>

namespace talvera {

/// Codes of the PlatformError that AudioEngine::start() throws.
enum class AudioEngineFailure { NoServer = 1, NoInput = 2, Refused = 3, TimedOut = 4 };

inline QString platformDomain(AudioEngineFailure) {
    return QStringLiteral("AudioEngine");
}

/// Captures from the system's default input device. Main thread only, apart from the tap's callback.
class AudioEngine {
public:
    /// Called on the engine's own thread, in order.
    using Tap = std::function<void(const AudioBuffer&)>;

    virtual ~AudioEngine() = default;

    /// The device's own format at this moment; all zero when there is no device.
    virtual AudioFormat inputFormat() = 0;

    /// Hands captured sound to `tap` in buffers of `bufferFrames` frames of `format`, or fewer when there are
    /// no more to wait for. Replaces a tap that is installed. To be called before start().
    virtual void installTap(std::size_t bufferFrames, const AudioFormat& format, Tap tap) = 0;

    /// Delivers what had been spoken up to this call, at most some tens of milliseconds later, then takes the
    /// tap away: when it returns, the callback is not running and won't run again. Harmless without a tap.
    virtual void removeTap() = 0;

    /// Starts the capture. Throws PlatformError (domain "AudioEngine", codes above) when the sound server is
    /// away, has no input, refuses or doesn't answer within a second; the tap stays installed then,
    /// but isn't called. Does nothing while capturing. A device that goes away later delivers no more, and
    /// `onLost` is told.
    virtual void start() = 0;

    /// Called on the engine's own thread when a device or the server goes away during a capture, once for
    /// each. To be set before start().
    virtual void setOnLost(std::function<void()> onLost) = 0;

    /// Lets go of the device. Harmless when not capturing.
    virtual void stop() = 0;
};

} // namespace talvera
