// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11OverlayWindow.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/windows/X11OverlayStack.h"
#include "linux/x11/windows/boundingShape.h"
#include "linux/x11/windows/forbidShadow.h"

#include <xcb/shape.h>

#include <array>

namespace talvera {

X11OverlayWindow::X11OverlayWindow(X11Connection& connection, X11OverlayStack& stack, xcb_window_t window)
    : m_connection(connection)
    , m_stack(stack)
    , m_window(window) {
    describe();
    setTakesClicks(false);
}

X11OverlayWindow::~X11OverlayWindow() {
    stayOnTop(false);
}

void X11OverlayWindow::setTakesClicks(bool takes) {
    if (takes) // the whole of its shape again
        xcb_shape_mask(m_connection.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, m_window, 0, 0,
                       XCB_PIXMAP_NONE);
    else
        xcb_shape_rectangles(m_connection.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, m_window, 0, 0, 0, nullptr);
    m_connection.roundTrip(); // the caller shows the window over another connection next
}

void X11OverlayWindow::setShape(const std::vector<QRect>& rectangles) {
    setBoundingShape(m_connection, m_window, rectangles);
}

void X11OverlayWindow::stayOnTop(bool stays) {
    if (stays)
        m_stack.keep(m_window);
    else
        m_stack.letGo(m_window);
}

/// Window managers don't see the window, but compositors do: they shall neither draw a shadow nor move it.
void X11OverlayWindow::describe() {
    const std::array types{m_connection.atom("_KDE_NET_WM_WINDOW_TYPE_ON_SCREEN_DISPLAY"),
                           m_connection.atom("_NET_WM_WINDOW_TYPE_NOTIFICATION")};
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, m_window,
                        m_connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, types.size(),
                        types.data());
    forbidShadow(m_connection, m_window);
}

} // namespace talvera
