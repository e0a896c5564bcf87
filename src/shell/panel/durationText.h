// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace talvera {

/// A whole number of seconds as the statistics show it, such as "45s", "12m" or "2h 5m".
QString durationText(std::int64_t seconds);

} // namespace talvera
