// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// What a session may lack for us to work in it.
enum class SessionLack {
    Permission,       ///< the desktop's settings can give it
    KnownSession,     ///< it is of a kind that we can't work in, or its display server has gone
    ExtensionOff,     ///< the desktop's part of us is switched off; SessionAccess::give() switches it on
    ExtensionUnknown, ///< the desktop looks for it only at the next log-in
    KeyWatching,      ///< programs aren't told of the keys
    KeyPosting,       ///< programs can't type
    ActiveWindow,     ///< nothing tells of the active window and changes it
};

} // namespace talvera
