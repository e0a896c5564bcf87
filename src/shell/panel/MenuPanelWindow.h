// SPDX-License-Identifier: MIT
#pragma once

#include "shell/panel/menuPanelFrame.h"

#include <Qt>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

/// The window of the status panel. It takes the keyboard while it is open, and stands in no task bar. Main
/// thread only.
class MenuPanelWindow {
public:
    virtual ~MenuPanelWindow() = default;

    /// On screen, also while it fades.
    virtual bool isVisible() const = 0;

    /// Throws the content away and makes it anew, so that everything is looked up again.
    virtual void renewContent() = 0;

    /// The height that the content asks for.
    virtual int fittingHeight() const = 0;

    /// The screen with `item`, or without one the screen with the pointer.
    virtual ScreenArea screenOf(const std::optional<QRect>& item) const = 0;

    /// Comes on top of everything at this place, takes the keyboard, and fades in over 0.12 seconds.
    virtual void fadeIn(const QRect& frame) = 0;

    /// Fades out over 0.1 seconds and then leaves the screen.
    virtual void fadeOut() = 0;

    /// Takes this place without more ado, while it is on screen.
    virtual void setFrame(const QRect& frame) = 0;

    /// Where it is.
    virtual QRect frame() const = 0;

    /// Is asked for each key before the content gets it; true swallows the key.
    std::function<bool(Qt::Key key)> onKeyDown;

    /// The content asks for another height than before.
    std::function<void()> onFittingHeightChanged;

    /// Another window has taken the keyboard.
    std::function<void()> onResignKey;
};

} // namespace talvera
