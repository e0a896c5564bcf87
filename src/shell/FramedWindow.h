// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace talvera {

/// A window of ours that the desktop frames, from its being made to its end. Main thread only.
class FramedWindow {
public:
    virtual ~FramedWindow() = default;

    /// Called once, in a turn of its own, when the user has closed it.
    std::function<void()> onClosed;

    /// Shows it in the middle of the screen, in front of all others and with the keyboard; later, brings it
    /// back there.
    virtual void bringToFront() = 0;
};

} // namespace talvera
