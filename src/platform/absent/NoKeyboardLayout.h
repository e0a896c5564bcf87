// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/KeyboardLayout.h"

namespace talvera {

/// A session that doesn't tell what its keys write.
class NoKeyboardLayout final : public KeyboardLayout {
public:
    std::optional<QString> character(VirtualKey) override { return std::nullopt; }
};

} // namespace talvera
