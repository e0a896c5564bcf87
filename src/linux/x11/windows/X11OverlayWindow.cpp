// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11OverlayWindow.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/windows/X11OverlayDesktop.h"
#include "linux/x11/windows/boundingShape.h"

#include <xcb/shape.h>

#include <array>

namespace talvera {

namespace {

constexpr int mostRaises = 8; ///< while shown once

} // namespace

X11OverlayWindow::X11OverlayWindow(X11OverlayDesktop& desktop, xcb_window_t window)
    : m_desktop(desktop)
    , m_window(window) {
    describe();
    setTakesClicks(false);
}

X11OverlayWindow::~X11OverlayWindow() {
    stayOnTop(false);
}

void X11OverlayWindow::setTakesClicks(bool takes) {
    auto& connection = *m_desktop.m_connection;
    if (takes) // the whole of its shape again
        xcb_shape_mask(connection.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, m_window, 0, 0,
                       XCB_PIXMAP_NONE);
    else
        xcb_shape_rectangles(connection.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, m_window, 0, 0, 0, nullptr);
    connection.roundTrip(); // the caller shows the window over another connection next
}

void X11OverlayWindow::setShape(const std::vector<QRect>& rectangles) {
    setBoundingShape(*m_desktop.m_connection, m_window, rectangles);
}

void X11OverlayWindow::stayOnTop(bool stays) {
    m_raisesLeft = stays ? mostRaises : 0;
    m_desktop.watchStack(*this, stays);
    if (stays)
        raise();
}

void X11OverlayWindow::restacked() {
    if (m_raisesLeft-- > 0)
        raise();
}

void X11OverlayWindow::raise() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_desktop.m_connection->get(), m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    m_desktop.m_connection->flush();
}

/// Window managers don't see the window, but compositors do: they shall neither draw a shadow nor move it.
void X11OverlayWindow::describe() {
    auto& connection = *m_desktop.m_connection;
    const std::array types{connection.atom("_KDE_NET_WM_WINDOW_TYPE_ON_SCREEN_DISPLAY"),
                           connection.atom("_NET_WM_WINDOW_TYPE_NOTIFICATION")};
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, m_window,
                        connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, types.size(),
                        types.data());
    const std::uint32_t none = 0;
    for (const char* shadow : {"_COMPTON_SHADOW", "_KDE_NET_WM_SHADOW"})
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, m_window, connection.atom(shadow),
                            XCB_ATOM_CARDINAL, 32, 1, &none);
}

} // namespace talvera
