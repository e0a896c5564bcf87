// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/OverlayDesktop.h"

#include <xcb/xcb.h>

namespace talvera {

class X11Connection;
class X11OverlayStack;

/// A window of which the window manager knows nothing (override-redirect): only such a one lets clicks
/// through, since window managers put frames around the others, and only such a one stays above full-screen
/// windows under all of them.
class X11OverlayWindow final : public OverlayWindow {
public:
    /// The stack works on `connection`; both outlive the overlay.
    X11OverlayWindow(X11Connection& connection, X11OverlayStack& stack, xcb_window_t window);
    ~X11OverlayWindow() override;

    void setTakesClicks(bool takes) override;
    void setShape(const std::vector<QRect>& rectangles) override;
    void stayOnTop(bool stays) override;

private:
    void describe();

    X11Connection& m_connection;
    X11OverlayStack& m_stack;
    xcb_window_t m_window;
};

} // namespace talvera
