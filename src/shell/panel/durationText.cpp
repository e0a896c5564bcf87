// SPDX-License-Identifier: MIT
#include "shell/panel/durationText.h"

namespace talvera {

namespace {

constexpr std::int64_t minute = 60;
constexpr std::int64_t hour = 60 * minute;

} // namespace

QString durationText(std::int64_t seconds) {
    if (seconds < minute)
        return QStringLiteral("%1s").arg(seconds);
    if (seconds < hour)
        return QStringLiteral("%1m").arg(seconds / minute);
    return QStringLiteral("%1h %2m").arg(seconds / hour).arg(seconds / minute % 60);
}

} // namespace talvera
