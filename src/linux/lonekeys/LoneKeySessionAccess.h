// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/SessionAccess.h"

namespace talvera {

/// What a session lets us do that tells of no keys itself: those held alone come from the helper, and some
/// compositors let programs type.
class LoneKeySessionAccess final : public SessionAccess {
public:
    explicit LoneKeySessionAccess(bool canType)
        : m_canType(canType) {}

    std::vector<SessionLack> lacks() override {
        return m_canType ? std::vector<SessionLack>() : std::vector{SessionLack::KeyPosting};
    }
    bool canWatchKeys() override { return true; }

private:
    const bool m_canType;
};

} // namespace talvera
