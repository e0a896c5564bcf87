// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Server.h"

#include <QRect>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace talvera::test {

/// The HUD as the user has it before their eyes.
class HUDOnScreen {
public:
    /// Where it is, in pixels; nothing while it isn't on the screen.
    std::optional<QRect> place();

    /// The screen's pixels at its place, as 0xRRGGBB; empty while it isn't on the screen.
    std::vector<std::uint32_t> pixels();

    /// The window that the user works in, whichever of its parts the keyboard goes to.
    xcb_window_t activeWindow();

private:
    std::unique_ptr<X11Connection> m_x11 = X11Server().connect();
};

} // namespace talvera::test
