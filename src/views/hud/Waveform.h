// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"

#include <array>

namespace talvera {

/// The row of bars that follows the voice: a low ripple in silence that swells with the level.
class Waveform {
public:
    static constexpr int barCount = 28;
    static constexpr double barWidth = 2.5;
    static constexpr double barGap = 2.5;
    static constexpr double tallest = 22;
    static constexpr double atRest = 4; ///< the bars' height while nothing moves

    /// The row at `time` in seconds, for a level from 0 to 1.
    Waveform(double time, double level);

    /// The height of bar number `bar`, from 0.
    double barHeight(int bar) const;

private:
    double m_level;
    std::array<double, 3> m_phases; ///< of the waves that make the ripple, within one turn
};

/// A level that takes a moment to get where it is told to be, fast at first.
class EasedLevel {
public:
    static constexpr Duration ease = seconds(0.08);

    void goTo(double level, Instant now);
    double at(Instant now) const;

private:
    double m_from = 0;
    double m_to = 0;
    Instant m_start{};
};

} // namespace talvera
