// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Time.h"

namespace talvera {

/// The row of bars that follows the voice: a low ripple in silence that swells with the level.
struct Waveform {
    static constexpr int barCount = 28;
    static constexpr double barWidth = 2.5;
    static constexpr double barGap = 2.5;
    static constexpr double tallest = 22;
    static constexpr double atRest = 4; ///< the bars' height while nothing moves

    /// The height of bar number `bar`, from 0, at `time` in seconds, for a level from 0 to 1.
    static double barHeight(int bar, double time, double level);
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
