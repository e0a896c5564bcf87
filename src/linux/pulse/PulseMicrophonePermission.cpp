// SPDX-License-Identifier: MIT
#include "linux/pulse/PulseMicrophonePermission.h"

#include <utility>

namespace talvera {

using namespace std::chrono_literals;

AuthorizationStatus PulseMicrophonePermission::status() {
    if (!std::exchange(m_asked, true))
        m_connection.waitForAnswer(100ms);
    return m_connection.status();
}

MicrophoneLack PulseMicrophonePermission::lack() {
    return m_connection.lack();
}

void PulseMicrophonePermission::requestAccess(std::function<void()> done) {
    m_connection.whenAnswered(std::move(done));
}

Subscription PulseMicrophonePermission::observe(std::function<void()> changed) {
    return m_connection.observe(std::move(changed));
}

} // namespace talvera
