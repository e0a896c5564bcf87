// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace talvera::simulation {

/// Chance that a seed repeats on every machine.
class Dice {
public:
    explicit Dice(std::uint64_t seed)
        : m_state(seed) {}

    std::uint64_t next() { // SplitMix64
        std::uint64_t z = (m_state += 0x9E3779B97F4A7C15ULL);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }

    /// At least 0 and below 1.
    double fraction() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }
    double between(double low, double high) { return low + fraction() * (high - low); }
    /// From 0 to `count` - 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }
    bool chance(double probability) { return fraction() < probability; }

    template <typename T>
    T pick(std::initializer_list<T> values) {
        return values.begin()[below(values.size())];
    }

private:
    std::uint64_t m_state;
};

} // namespace talvera::simulation
