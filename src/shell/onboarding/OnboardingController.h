// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

namespace talvera {

/// The first-run wizard's hold on the hotkey. Main thread only. There is no wizard yet to set the flags or to
/// hear the presses.
class OnboardingController {
public:
    virtual ~OnboardingController() = default;

    /// The hotkey feeds the wizard's demo, and no dictation starts.
    Published<bool> captureHotkey{false};
    /// The hotkey does nothing: a shortcut is being recorded.
    Published<bool> suspendHotkey{false};

    /// The hotkey was pressed or let go while captureHotkey is set.
    virtual void demoPressStart() {}
    virtual void demoPressEnd() {}
};

} // namespace talvera
