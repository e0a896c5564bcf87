// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace talvera {

/// The floating window of the HUD. It never takes the focus. Main thread only.
class HUDPanel {
public:
    virtual ~HUDPanel() = default;

    /// The panel is on screen, also while it fades.
    virtual bool isVisible() const = 0;

    /// Places the panel anew, brings it on screen without activating anything, and fades it in.
    virtual void fadeIn() = 0;

    /// Fades the panel out over 0.18 seconds, then takes it off the screen and calls `completion`, in a turn
    /// of its own. A fade in meanwhile doesn't stop that.
    virtual void fadeOut(std::function<void()> completion) = 0;

    /// Fades the panel out as above and takes it off the screen, unless it is faded in meanwhile.
    virtual void withdraw() = 0;

    /// Whether clicks go through the panel to what lies below it.
    virtual void setIgnoresMouseEvents(bool ignores) = 0;
};

using HUDPanelFactory = std::function<std::unique_ptr<HUDPanel>()>;

} // namespace talvera
