// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/sway/SwayIpc.h"
#include "platform/desktop/SessionAccess.h"

#include <utility>

namespace talvera {

/// What a sway session lets us do: watch chords and see the windows by its socket, and type if it has a
/// keyboard for programs.
class SwaySessionAccess final : public SessionAccess {
public:
    SwaySessionAccess(SwayIpc sway, bool canType)
        : m_sway(std::move(sway))
        , m_canType(canType) {}

    std::vector<SessionLack> lacks() override {
        if (!m_sway.isThere())
            return {SessionLack::KnownSession};
        return m_canType ? std::vector<SessionLack>() : std::vector{SessionLack::KeyPosting};
    }
    bool canWatchKeys() override { return m_sway.isThere(); }

private:
    const SwayIpc m_sway;
    const bool m_canType;
};

} // namespace talvera
