// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/X11InputDevices.h"
#include "platform/keyboard/VirtualKey.h"

#include <string>

namespace talvera {

/// Whether the user can have this key: false only when there are keyboards, and the kernel says of each
/// that it lacks the key. `sysfs` is where the kernel says so.
bool mayHaveKey(VirtualKey key, X11Connection& connection, const X11InputDevices& devices,
                const std::string& sysfs);

} // namespace talvera
