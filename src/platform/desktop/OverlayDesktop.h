// SPDX-License-Identifier: MIT
#pragma once

#include "concurrency/Published.h"

#include <QRect>

#include <memory>
#include <optional>
#include <vector>

class QWindow;

namespace talvera {

/// What makes of a window one that floats over all others, as long as this object lives. The window is never
/// activated, and no task bar or window switcher knows it. Main thread only.
class OverlayWindow {
public:
    virtual ~OverlayWindow() = default;

    /// Whether clicks meet the window or what lies below it.
    virtual void setTakesClicks(bool takes) = 0;

    /// The window is just these rectangles, in its own pixels; without any, all of its rectangle.
    virtual void setShape(const std::vector<QRect>& rectangles) = 0;

    /// Keeps the window above all others until `stayOnTop(false)`: also above those that come up meanwhile.
    virtual void stayOnTop(bool stays) = 0;
};

/// The desktop as windows see it that float over it. Main thread only.
class OverlayDesktop {
public:
    OverlayDesktop() = default;
    OverlayDesktop(const OverlayDesktop&) = delete;
    OverlayDesktop& operator=(const OverlayDesktop&) = delete;
    virtual ~OverlayDesktop() = default;

    /// Whether translucent windows are shown as such.
    Published<bool> isComposited{false};

    /// What panels leave free of the monitor on which the user works: the one with the focused window, else
    /// the one with the pointer. In the coordinates that windows are placed in; nothing where there is no
    /// monitor.
    virtual std::optional<QRect> workArea() = 0;

    /// `window`, which is neither on screen nor made yet, becomes an overlay. Both outlive it.
    virtual std::unique_ptr<OverlayWindow> adopt(QWindow& window) = 0;
};

} // namespace talvera
