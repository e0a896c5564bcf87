// SPDX-License-Identifier: MIT
#pragma once

#include "linux/applications/DesktopEntryIndex.h"
#include "platform/desktop/Workspace.h"

#include <sys/types.h>

namespace talvera {

class DesktopEntryCatalog;

/// What the process is called whose window says this of itself: by its desktop entry where there is one, else
/// as the window puts it. Main thread only.
RunningApplication applicationOfWindow(pid_t pid, const WindowIdentity& window,
                                       DesktopEntryCatalog& installed);

} // namespace talvera
