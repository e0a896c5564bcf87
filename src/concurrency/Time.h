// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace talvera {

/// A span of time. Everything that waits or measures counts in whole nanoseconds.
using Duration = std::chrono::nanoseconds;

/// The clock of a MainActor: steady, starting at an arbitrary moment, virtual in tests.
struct ActorClock {
    using duration = Duration;
    using rep = duration::rep;
    using period = duration::period;
    using time_point = std::chrono::time_point<ActorClock>;
    static constexpr bool is_steady = true;
};

/// A moment on the steady clock; only differences mean anything.
using Instant = ActorClock::time_point;

/// A moment of the calendar, for what is stored or shown.
using WallTime = std::chrono::system_clock::time_point;

/// `value` seconds, rounded to the nearest nanosecond.
constexpr Duration seconds(double value) {
    return Duration{static_cast<Duration::rep>(value * 1e9 + (value < 0 ? -0.5 : 0.5))};
}

/// The duration in seconds.
constexpr double toSeconds(Duration duration) {
    return std::chrono::duration<double>(duration).count();
}

} // namespace talvera
