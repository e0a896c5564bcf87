// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"

#include <cstdint>
#include <optional>

namespace talvera {

/// A key that goes down, or is repeated, in a window of ours, in the numbers that the toolkit hands through
/// from the session.
struct WindowKeyPress {
    std::uint32_t scanCode = 0;
    std::uint32_t symbol = 0;    ///< what the layout makes of the key
    std::uint32_t modifiers = 0; ///< those before this press
    bool autorepeat = false;
};

/// Knows the keys of window events by their places. Main thread only.
class WindowKeys {
public:
    virtual ~WindowKeys() = default;

    /// The same press as a KeyDown, or as a FlagsChanged for a modifier key; nothing for a key without a
    /// number of ours. The press that switches a lock off shows it off already.
    virtual std::optional<KeyEvent> read(const WindowKeyPress& press) const = 0;
};

} // namespace talvera
