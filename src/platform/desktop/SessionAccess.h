// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/SessionLack.h"

#include <vector>

namespace talvera {

/// What this session lets us do. Main thread only; every call returns soon.
class SessionAccess {
public:
    virtual ~SessionAccess() = default;

    /// What is lacking now for us to watch keys, post keys and see the active window; empty when all is
    /// there. It may come and go.
    virtual std::vector<SessionLack> lacks() = 0;

    /// The user wants what lacks, and a word of ours may get it. False where that is for the user to do. What
    /// comes of it shows later, in lacks().
    virtual bool give([[maybe_unused]] SessionLack lack) { return false; }

    /// We may watch keys here, whatever else is lacking.
    virtual bool canWatchKeys() = 0;
};

} // namespace talvera
