// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

namespace talvera {

/// Chooses the channel that a recording is made of. Two microphones in one needn't agree: their mean would
/// cancel a voice that one of them has upside down, and one input in use of eight would be heard at an
/// eighth. So the loudest channel is taken, at first the first one; another takes over once it is clearly
/// louder for a while, or where there was next to nothing.
class LoudestChannel {
public:
    explicit LoudestChannel(std::size_t channels)
        : m_energies(channels) {}

    /// The channel for the next frames, after these have been heard: `samples` gives the sample at an index,
    /// `frames` of all channels interleaved.
    template <typename SampleAt>
    std::size_t choose(std::size_t frames, SampleAt sampleAt) {
        const auto channels = m_energies.size();
        for (std::size_t channel = 0; channels > 1 && channel < channels; ++channel) {
            double energy = 0;
            for (std::size_t frame = 0; frame < frames; ++frame) {
                const double sample = sampleAt(frame * channels + channel);
                energy += sample * sample;
            }
            m_energies[channel] = m_energies[channel] * memory + energy;
        }
        for (std::size_t channel = 0; channel < channels; ++channel) {
            if (m_energies[channel] > clearly * m_energies[m_chosen])
                m_chosen = channel;
        }
        return m_chosen;
    }

private:
    static constexpr double memory = 0.7; ///< what stays of the past from one buffer to the next
    static constexpr double clearly = 4;  ///< twice the amplitude

    std::vector<double> m_energies;
    std::size_t m_chosen = 0;
};

} // namespace talvera
