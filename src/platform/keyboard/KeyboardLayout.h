// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace talvera {

/// The keyboard layout that is active at the moment of the call. Main thread only.
class KeyboardLayout {
public:
    virtual ~KeyboardLayout() = default;

    /// What the key with this virtual key code writes without modifiers; nothing for keys without a character
    /// and for dead keys.
    virtual std::optional<QString> character(std::uint16_t keyCode) = 0;
};

} // namespace talvera
