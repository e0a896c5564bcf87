// SPDX-License-Identifier: MIT
#pragma once

#include "linux/wayland/client/Toplevels.h"
#include "platform/desktop/SessionAccess.h"

#include <memory>
#include <utility>

namespace talvera {

/// What a session lets us do whose compositor tells of its windows. The user binds keys to our commands
/// there; we hear of those held alone where the helper is installed.
class ToplevelSessionAccess final : public SessionAccess {
public:
    ToplevelSessionAccess(std::shared_ptr<Toplevels> windows, bool canType, bool hearsKeys)
        : m_windows(std::move(windows))
        , m_canType(canType)
        , m_hearsKeys(hearsKeys) {}

    std::vector<SessionLack> lacks() override {
        if (m_windows->isGone())
            return {SessionLack::KnownSession};
        return m_canType ? std::vector<SessionLack>() : std::vector{SessionLack::KeyPosting};
    }
    bool canWatchKeys() override { return m_hearsKeys; }

private:
    const std::shared_ptr<Toplevels> m_windows;
    const bool m_canType;
    const bool m_hearsKeys;
};

} // namespace talvera
