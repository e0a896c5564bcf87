// SPDX-License-Identifier: MIT
#include "linux/pulse/chooseMicrophone.h"

#include <algorithm>
#include <string_view>

namespace talvera {

namespace {

auto named(const std::string& name, const std::vector<PulseSource>& sources) {
    return std::find_if(sources.begin(), sources.end(),
                        [&](const PulseSource& source) { return source.name == name; });
}

AudioFormat formatOf(const pa_sample_spec& spec) {
    const auto type = spec.format == PA_SAMPLE_S16NE ? SampleType::Int16 : SampleType::Float32;
    return {static_cast<double>(spec.rate), spec.channels, type};
}

Microphone microphoneOf(const PulseSource& source, bool isDefault) {
    return {source.name, isDefault, formatOf(source.sampleSpec), source.channelMap};
}

} // namespace

std::optional<Microphone> chooseMicrophone(const std::string& defaultSource,
                                           const std::vector<PulseSource>& sources) {
    const auto preferred = named(defaultSource, sources);
    if (preferred != sources.end() && !preferred->isMonitor)
        return microphoneOf(*preferred, true);
    const auto other = std::find_if(sources.begin(), sources.end(), [](const PulseSource& source) {
        return !source.isMonitor && !source.isUnplugged;
    });
    if (other == sources.end())
        return std::nullopt;
    return microphoneOf(*other, false);
}

bool isMonitor(const std::string& device, const std::vector<PulseSource>& sources) {
    const auto known = named(device, sources);
    if (known != sources.end())
        return known->isMonitor;
    constexpr std::string_view suffix = ".monitor"; // what every server appends to the loudspeaker's name
    return std::string_view(device).ends_with(suffix);
}

} // namespace talvera
