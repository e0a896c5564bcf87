// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/SessionAccess.h"

namespace talvera {

/// A session of a kind that we can't work in.
class NoSessionAccess final : public SessionAccess {
public:
    std::vector<SessionLack> lacks() override { return {SessionLack::KnownSession}; }
    bool canWatchKeys() override { return false; }
};

} // namespace talvera
