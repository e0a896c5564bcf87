// SPDX-License-Identifier: MIT
#include "shell/readiness/SessionLackText.h"

#include "text/Localization.h"

namespace talvera {

QString sessionLackText(SessionLack lack) {
    switch (lack) {
    case SessionLack::Permission:
        return localized("session.lack.permission",
                         "This desktop doesn't let Talvera watch keys and type. Allow it in its settings.");
    case SessionLack::KnownSession:
        return localized(
            "session.lack.knownSession",
            "Talvera can't work in this kind of session yet. Choose another one when you log in: "
            "Wayland sessions don't let it watch keys.");
    case SessionLack::ExtensionOff:
        return localized("session.lack.extensionOff",
                         "Talvera works in GNOME by an extension of GNOME Shell, and that is switched off. "
                         "Allow it here, or switch it on in the Extensions app.");
    case SessionLack::ExtensionUnknown:
        return localized("session.lack.extensionUnknown",
                         "GNOME Shell doesn't know Talvera's extension yet. Log out and in again, once.");
    case SessionLack::KeyWatching:
        return localized("session.lack.keyWatching", "This session doesn't let programs watch the keyboard. "
                                                     "Choose another one when you log in.");
    case SessionLack::KeyPosting:
        return localized("session.lack.keyPosting",
                         "This session doesn't let programs type, or that is switched off. "
                         "Choose another one when you log in.");
    case SessionLack::ActiveWindow:
        return localized("session.lack.activeWindow",
                         "The window manager doesn't tell which window is active (or none is running). "
                         "Use another one.");
    }
    Q_UNREACHABLE();
}

} // namespace talvera
