// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>

namespace talvera {

/// How long poll() is to wait so that it isn't back before `moment`: for ever without one, and otherwise a
/// minute at the most, so that a moment far away is no number that an int can't hold.
inline int millisecondsUntil(std::optional<std::chrono::steady_clock::time_point> moment) {
    if (!moment)
        return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(*moment - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 60'000));
}

} // namespace talvera
