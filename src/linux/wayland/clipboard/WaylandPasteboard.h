// SPDX-License-Identifier: MIT
#pragma once

#include "linux/clipboard/CompanionPasteboard.h"

#include <functional>
#include <string>

namespace talvera {

/// The clipboard and the primary selection of the Wayland session in $WAYLAND_DISPLAY, which terminals paste
/// from instead.
class WaylandPasteboard final : public CompanionPasteboard {
public:
    /// Whether the compositor lets programs without a window have the clipboard.
    static bool isPossible();

    /// `pastesFromPrimary` tells whether the focused program may be a terminal. Elsewhere what the user has
    /// marked stays marked, so that what is pasted takes its place. Called on the thread that sets a text.
    WaylandPasteboard(Console& console, std::string companionProgram,
                      std::function<bool()> pastesFromPrimary);
};

} // namespace talvera
