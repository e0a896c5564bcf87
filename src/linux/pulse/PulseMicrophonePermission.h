// SPDX-License-Identifier: MIT
#pragma once

#include "linux/pulse/PulseConnection.h"
#include "platform/sound/MicrophonePermission.h"

namespace talvera {

/// These desktops have no permission service: we may listen when the sound server lets us in and has a
/// microphone, and may not when it refuses, has none or is away. Undetermined until it has answered.
class PulseMicrophonePermission final : public MicrophonePermission {
public:
    explicit PulseMicrophonePermission(PulseConnection& connection)
        : m_connection(connection) {}

    /// The first call waits for the server's first answer, at most a tenth of a second, so that a launch
    /// doesn't begin with a request for what we have.
    AuthorizationStatus status() override;
    MicrophoneLack lack() override;
    void requestAccess(std::function<void()> done) override;
    Subscription observe(std::function<void()> changed) override;

private:
    PulseConnection& m_connection;
    bool m_asked = false;
};

} // namespace talvera
