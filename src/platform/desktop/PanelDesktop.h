// SPDX-License-Identifier: MIT
#pragma once

#include <QMargins>
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

    /// `window`, which is on screen, gets exactly this size in its own pixels.
    virtual void setSize(QWindow& window, const QSize& pixels) = 0;

    /// `window` is just these rectangles, in its own pixels; without any, all of its rectangle.
    virtual void setShape(QWindow& window, const std::vector<QRect>& rectangles) = 0;

    /// What lies outside of `clickable` in `window`, in its own pixels and `margins` wide, is but a shadow
    /// that the window draws itself: the desktop adds none of its own, and clicks go through.
    virtual void setShadow(QWindow& window, const QMargins& margins, const std::vector<QRect>& clickable) = 0;

    /// Gives the keyboard to `window`, which is on screen, since the user wants it.
    virtual void activate(QWindow& window) = 0;
};

} // namespace talvera
