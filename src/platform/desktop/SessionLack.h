// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// What a session may lack for us to work in it.
enum class SessionLack {
    XServer,      ///< there is none, as in a Wayland session without one
    KeyWatching,  ///< the X server doesn't announce keys (XInput 2)
    KeyPosting,   ///< the X server doesn't take keys from programs (XTEST)
    ActiveWindow, ///< no window manager that tells of it and changes it
};

} // namespace talvera
