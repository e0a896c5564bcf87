// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// Whether the session starts this program at login. Main thread only.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    virtual bool isRegistered() = 0;

    /// Both throw PlatformError (domain "LoginItem").
    virtual void registerProgram() = 0;
    virtual void unregisterProgram() = 0;
};

} // namespace talvera
