// SPDX-License-Identifier: MIT
#include "shell/panel/durationText.h"

#include "text/Localization.h"

namespace talvera {

namespace {

constexpr std::int64_t minute = 60;
constexpr std::int64_t hour = 60 * minute;

} // namespace

QString durationText(std::int64_t seconds) {
    if (seconds < minute)
        return formatted(localized("duration.seconds", "%llds"), seconds);
    if (seconds < hour)
        return formatted(localized("duration.minutes", "%lldm"), seconds / minute);
    const auto hours = formatted(localized("duration.hours", "%lldh %lldm"), seconds / hour);
    return formatted(hours, seconds / minute % 60);
}

} // namespace talvera
