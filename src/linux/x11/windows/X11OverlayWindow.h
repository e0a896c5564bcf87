// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/OverlayDesktop.h"

#include <xcb/xcb.h>

namespace talvera {

class X11OverlayDesktop;

/// A window of which the window manager knows nothing (override-redirect): only such a one lets clicks
/// through, since window managers put frames around the others, and only such a one stays above full-screen
/// windows under all of them.
class X11OverlayWindow final : public OverlayWindow {
public:
    /// `desktop` outlives the overlay.
    X11OverlayWindow(X11OverlayDesktop& desktop, xcb_window_t window);
    ~X11OverlayWindow() override;

    void setTakesClicks(bool takes) override;
    void setShape(const std::vector<QRect>& rectangles) override;
    void stayOnTop(bool stays) override;

    xcb_window_t id() const { return m_window; }

    /// Other windows have been restacked. Raises this one again, a few times at most: two that both want to
    /// be the topmost would never come to rest.
    void restacked();

private:
    void describe();
    void raise();

    X11OverlayDesktop& m_desktop;
    xcb_window_t m_window;
    int m_raisesLeft = 0;
};

} // namespace talvera
