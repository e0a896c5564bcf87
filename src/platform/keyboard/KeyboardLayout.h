// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/VirtualKey.h"

#include <QString>

#include <optional>

namespace talvera {

/// The keyboard layout that is active at the moment of the call. Main thread only.
class KeyboardLayout {
public:
    virtual ~KeyboardLayout() = default;

    /// What the key writes without modifiers; nothing for keys without a character and for dead keys.
    virtual std::optional<QString> character(VirtualKey key) = 0;
};

} // namespace talvera
