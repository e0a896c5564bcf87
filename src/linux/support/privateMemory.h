// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// This process leaves no core file, nor do the programs that it starts unless they ask for one.
void leaveNoCoreFile();

/// From here on no core service gets this process's memory, and no other process of the user may look into
/// it. Whoever asks for it must have made itself known to the desktop's portals before: they look into the
/// program that calls them first, and turn away one that they can't look into.
void keepMemoryPrivate();

} // namespace talvera
