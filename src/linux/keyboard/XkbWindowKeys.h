// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/WindowKeys.h"

namespace talvera {

/// The keys of windows on X11 and Wayland alike: both hand out the keycodes, symbols and modifiers of XKB.
class XkbWindowKeys final : public WindowKeys {
public:
    std::optional<KeyEvent> read(const WindowKeyPress& press) const override;
};

} // namespace talvera
