// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include <linux/input-event-codes.h>

namespace talvera {

/// The keys that the helper tells of, by their evdev codes. None of them writes anything: whoever starts the
/// helper learns no text.
inline constexpr std::array<std::uint16_t, 5> askableKeys{KEY_RIGHTCTRL, KEY_RIGHTMETA, KEY_RIGHTALT,
                                                          KEY_CAPSLOCK, KEY_WAKEUP};

constexpr bool isAskable(int code) {
    return std::ranges::find(askableKeys, code) != askableKeys.end();
}

} // namespace talvera
