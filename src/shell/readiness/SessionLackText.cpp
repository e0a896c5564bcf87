// SPDX-License-Identifier: MIT
#include "shell/readiness/SessionLackText.h"

#include "text/Localization.h"

namespace talvera {

QString sessionLackText(SessionLack lack) {
    switch (lack) {
    case SessionLack::XServer:
        return localized("session.lack.xServer",
                         "This session has no X server that Talvera can reach. In a Wayland session it can't "
                         "watch keys yet.");
    case SessionLack::KeyWatching:
        return localized("session.lack.keyWatching",
                         "The X server doesn't let programs watch the keyboard (XInput 2 is missing).");
    case SessionLack::KeyPosting:
        return localized("session.lack.keyPosting",
                         "The X server doesn't let programs type (XTEST is missing or switched off).");
    case SessionLack::ActiveWindow:
        return localized("session.lack.activeWindow",
                         "The window manager doesn't tell which window is active (or none is running).");
    }
    Q_UNREACHABLE();
}

} // namespace talvera
