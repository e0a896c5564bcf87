// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <functional>

namespace talvera {

/// The first-run wizard's hold on the hotkey. Main thread only. There is no wizard yet to set the flags or to
/// hear the presses.
class OnboardingController {
public:
    /// The hotkey feeds the wizard's demo, and no dictation starts.
    Published<bool> captureHotkey{false};
    /// The hotkey does nothing: a shortcut is being recorded.
    Published<bool> suspendHotkey{false};

    /// What the demo does with a press and a release.
    std::function<void()> onDemoPressStart;
    std::function<void()> onDemoPressEnd;

    /// The hotkey was pressed or let go while captureHotkey is set.
    void demoPressStart() const { run(onDemoPressStart); }
    void demoPressEnd() const { run(onDemoPressEnd); }

private:
    static void run(const std::function<void()>& step) {
        if (step)
            step();
    }
};

} // namespace talvera
