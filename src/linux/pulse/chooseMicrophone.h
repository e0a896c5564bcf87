// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/AudioBuffer.h"

#include <pulse/channelmap.h>
#include <pulse/sample.h>

#include <optional>
#include <string>
#include <vector>

namespace talvera {

/// A place that the sound server can record from.
struct PulseSource {
    std::string name;
    pa_sample_spec sampleSpec{};
    pa_channel_map channelMap{};
    bool isMonitor = false;   ///< it records what a loudspeaker plays
    bool isUnplugged = false; ///< its socket is known to be empty
};

/// What we record from.
struct Microphone {
    std::string device;     ///< the source's name
    bool isDefault = false; ///< the server would take it by itself
    AudioFormat format;     ///< the source's own rate and channels, in the nearest type that we take
    pa_channel_map channelMap{};
};

/// Picks the system's default input device: the default source. When that is a monitor, which hears the
/// loudspeakers and nothing else, then the first plugged-in source that isn't. Nothing when there is none.
std::optional<Microphone> chooseMicrophone(const std::string& defaultSource,
                                           const std::vector<PulseSource>& sources);

/// Whether `device` is a monitor, as far as `sources` tell; by its name if they don't.
bool isMonitor(const std::string& device, const std::vector<PulseSource>& sources);

} // namespace talvera
