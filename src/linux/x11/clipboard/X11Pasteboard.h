// SPDX-License-Identifier: MIT
#pragma once

#include "linux/clipboard/CompanionPasteboard.h"
#include "linux/x11/server/X11Server.h"

#include <string>

namespace talvera {

/// The clipboard and the primary selection of the X session, which some programs paste from instead.
class X11Pasteboard final : public CompanionPasteboard {
public:
    X11Pasteboard(Console& console, std::string companionProgram, X11Server server);
};

} // namespace talvera
