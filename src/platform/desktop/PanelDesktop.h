// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <vector>

class QWindow;

namespace talvera {

/// The desktop as a window sees it that comes and goes like a menu. Main thread only.
class PanelDesktop {
public:
    virtual ~PanelDesktop() = default;

    /// Whether translucent windows are shown as such now.
    virtual bool isComposited() = 0;

    /// `window`, not yet on screen, will stand in no task bar and no window switcher, and on every workspace.
    virtual void adopt(QWindow& window) = 0;

    /// `window` is just these rectangles, in its own pixels; without any, all of its rectangle.
    virtual void setShape(QWindow& window, const std::vector<QRect>& rectangles) = 0;

    /// Gives the keyboard to `window`, which is on screen, since the user wants it.
    virtual void activate(QWindow& window) = 0;
};

} // namespace talvera
