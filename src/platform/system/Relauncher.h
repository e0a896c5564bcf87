// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// Starts this program anew. Main thread only.
class Relauncher {
public:
    virtual ~Relauncher() = default;

    /// Sees to it that the program starts again once this process has ended, but not before half a second has
    /// passed. Throws PlatformError (domain "Relauncher").
    virtual void startAgainAfterOurEnd() = 0;
};

} // namespace talvera
