// SPDX-License-Identifier: MIT
#pragma once

#include "linux/applications/DesktopEntryIndex.h"

#include <QByteArray>

#include <vector>

#include <sys/types.h>

namespace talvera {

/// A window as sway knows it, of a Wayland or an X program.
struct SwayWindow {
    qint64 container = 0; ///< its number
    pid_t pid = 0;
    WindowIdentity identity;
    bool hasFocus = false;
};

/// The windows of sway's tree, in JSON as it tells it: the one that had the focus last comes first. None if
/// that is no tree.
std::vector<SwayWindow> swayWindows(const QByteArray& tree);

} // namespace talvera
