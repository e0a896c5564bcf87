// SPDX-License-Identifier: MIT
#include "shell/settings/relaunchApplication.h"

#include "concurrency/MainActor.h"
#include "platform/system/PlatformError.h"
#include "platform/system/Relauncher.h"

#include <utility>

namespace talvera {

void relaunchApplication(MainActor& actor, Relauncher& relauncher, std::function<void()> terminate) {
    try {
        relauncher.startAgainAfterOurEnd();
    } catch (const PlatformError&) {
        // The user has asked for the end in any case.
    }
    actor.startTimer(seconds(0.1), std::move(terminate));
}

} // namespace talvera
