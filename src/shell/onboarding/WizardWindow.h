// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace talvera {

/// The wizard's window on the screen, from its being made to its end. Main thread only.
class WizardWindow {
public:
    virtual ~WizardWindow() = default;

    /// Called once, in a turn of its own, when the user has closed it.
    std::function<void()> onClosed;

    /// Shows it in the middle of the screen, in front of all others and with the keyboard; later, brings it
    /// back there.
    virtual void bringToFront() = 0;
};

} // namespace talvera
