// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"
#include "shell/hud/DictationHUDState.h"

#include <functional>

namespace talvera {

/// What the HUD's views follow. Main thread only.
struct StateHolder {
    Published<DictationHUDState> state;
    Published<float> level{0.0F}; ///< the microphone's level, smoothed, from 0 to 1

    /// What the permission card does when it is closed and when it is clicked; empty while no card is shown.
    std::function<void()> permissionDismiss;
    std::function<void()> permissionOpenSettings;

    /// The user clicked the one or the other. What they do may take the functions away, so copies run.
    void dismissPermission() const { runCopy(permissionDismiss); }
    void openPermissionSettings() const { runCopy(permissionOpenSettings); }

private:
    static void runCopy(const std::function<void()>& action) {
        if (const auto copy = action)
            copy();
    }
};

} // namespace talvera
