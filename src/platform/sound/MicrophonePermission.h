// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <functional>

namespace talvera {

/// Whether we may listen. The numbers are the ones that are compared and stored.
enum class AuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3 };

/// What keeps us from listening.
enum class MicrophoneLack {
    None,
    Answer,     ///< the sound server has not answered yet
    Server,     ///< there is no sound server
    Permission, ///< the sound server doesn't let us in
    Microphone, ///< it has no microphone
};

/// Access to the microphone. Main thread only.
class MicrophonePermission {
public:
    virtual ~MicrophonePermission() = default;

    /// The present status, at once and without asking the user.
    virtual AuthorizationStatus status() = 0;

    /// Why the present status is what it is, at once; nothing is lacking exactly when it is Authorized.
    virtual MicrophoneLack lack() = 0;

    /// Asks for access and calls `done` once the answer is known, in a later turn.
    virtual void requestAccess(std::function<void()> done) = 0;

    /// Calls `changed` in a turn of its own whenever status() has become another one.
    [[nodiscard]] virtual Subscription observe(std::function<void()> changed) = 0;
};

} // namespace talvera
