// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <functional>

namespace talvera {

/// When the user turns to this program. Main thread only.
class ProgramActivation {
public:
    virtual ~ProgramActivation() = default;

    /// Calls `activated` whenever a window of ours has become the one that the user works in, coming from
    /// another program.
    [[nodiscard]] virtual Subscription observe(std::function<void()> activated) = 0;
};

} // namespace talvera
