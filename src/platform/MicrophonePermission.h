// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// Whether we may listen. The numbers are the ones that are compared and stored.
enum class AuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3 };

/// Access to the microphone. Main thread only.
class MicrophonePermission {
public:
    virtual ~MicrophonePermission() = default;

    /// The present status, at once and without asking the user.
    virtual AuthorizationStatus status() = 0;
};

} // namespace talvera
