// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/LoginItem.h"

namespace talvera {

/// Makes the program start at login, or not; what already is so stays. Throws PlatformError.
inline void setLaunchAtLogin(LoginItem& item, bool enabled) {
    if (enabled == item.isRegistered())
        return;
    if (enabled)
        item.registerProgram();
    else
        item.unregisterProgram();
}

} // namespace talvera
