// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11PanelDesktop.h"

#include "linux/support/logicalRect.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/server/compositor.h"
#include "linux/x11/server/eventType.h"
#include "linux/x11/windows/EwmhWindows.h"
#include "linux/x11/windows/boundingShape.h"
#include "linux/x11/windows/forbidShadow.h"
#include "linux/x11/windows/nativeWindow.h"

#include <xcb/xinput.h>

#include <array>
#include <utility>

namespace talvera {

namespace {

// In the first item of WM_NORMAL_HINTS, as the ICCCM has them.
constexpr std::uint32_t resizeIncrement = 1U << 6;
constexpr std::uint32_t baseSize = 1U << 8;

constexpr std::uint32_t everyWorkspace = 0xffffffff;
constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

} // namespace

X11PanelDesktop::X11PanelDesktop(const X11Server& server)
    : m_connection(server.connect())
    , m_pump(*m_connection, [this](const xcb_generic_event_t& event) { handle(event); }) {
    // A client that names no version gets no events of these.
    m_connection->reply<xcb_input_xi_query_version_reply_t>(
        xcb_input_xi_query_version(m_connection->get(), 2, 2));
}

X11PanelDesktop::~X11PanelDesktop() = default;

bool X11PanelDesktop::isComposited() {
    return talvera::isComposited(*m_connection);
}

void X11PanelDesktop::adopt(QWindow& window) {
    const auto id = nativeWindow(window);
    const std::array states{
        m_connection->atom("_NET_WM_STATE_SKIP_TASKBAR"), m_connection->atom("_NET_WM_STATE_SKIP_PAGER"),
        m_connection->atom("_NET_WM_STATE_ABOVE"), m_connection->atom("_NET_WM_STATE_STICKY")};
    xcb_change_property(m_connection->get(), XCB_PROP_MODE_REPLACE, id, m_connection->atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, states.size(), states.data());
    xcb_change_property(m_connection->get(), XCB_PROP_MODE_REPLACE, id, m_connection->atom("_NET_WM_DESKTOP"),
                        XCB_ATOM_CARDINAL, 32, 1, &everyWorkspace);
    m_connection->roundTrip(); // the window is shown over another connection next
}

/// Qt scales the steps of one pixel that its windows grow by, and says two from 150 % on: window managers
/// then cut off the odd pixel, and with it the panel's edge.
void X11PanelDesktop::setSize(QWindow& window, const QSize& pixels) {
    const auto id = nativeWindow(window);
    auto hints = m_connection->property(id, XCB_ATOM_WM_NORMAL_HINTS);
    if (!hints.empty()) {
        hints.front() &= ~(resizeIncrement | baseSize);
        xcb_change_property(m_connection->get(), XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_NORMAL_HINTS,
                            XCB_ATOM_WM_SIZE_HINTS, 32, std::uint32_t(hints.size()), hints.data());
    }
    const std::array size{std::uint32_t(pixels.width()), std::uint32_t(pixels.height())};
    xcb_configure_window(m_connection->get(), id, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         size.data());
    m_connection->flush();
}

void X11PanelDesktop::setShape(QWindow& window, const std::vector<QRect>& rectangles) {
    setBoundingShape(*m_connection, nativeWindow(window), rectangles);
}

void X11PanelDesktop::setShadow(QWindow& window, const QMargins& margins,
                                const std::vector<QRect>& clickable) {
    const auto id = nativeWindow(window);
    const std::array extents{std::uint32_t(margins.left()), std::uint32_t(margins.right()),
                             std::uint32_t(margins.top()), std::uint32_t(margins.bottom())};
    xcb_change_property(m_connection->get(), XCB_PROP_MODE_REPLACE, id,
                        m_connection->atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, extents.size(),
                        extents.data());
    forbidShadow(*m_connection, id);
    setInputShape(*m_connection, id, clickable);
}

void X11PanelDesktop::activate(QWindow& window) {
    const auto id = nativeWindow(window);
    EwmhWindows windows(*m_connection);
    if (windows.canActivate())
        windows.requestActivation(id);
    else
        xcb_set_input_focus(m_connection->get(), XCB_INPUT_FOCUS_POINTER_ROOT, id, XCB_CURRENT_TIME);
    m_connection->flush();
}

/// Raw events come beside the ordinary ones: no program misses a press because we see it.
Subscription X11PanelDesktop::watchPresses(std::function<void(QPoint place)> pressed) {
    auto observer = std::make_shared<std::function<void(QPoint)>>(std::move(pressed));
    m_pressed = observer;
    selectPresses(true);
    return Subscription(std::move(observer));
}

void X11PanelDesktop::selectPresses(bool selected) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                selected ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS} : 0};
    xcb_input_xi_select_events(m_connection->get(), m_connection->root(), 1, &selection.head);
    m_connection->flush();
}

void X11PanelDesktop::handle(const xcb_generic_event_t& event) {
    if (eventType(event) != XCB_GE_GENERIC)
        return;
    const auto pressed = m_pressed.lock();
    if (!pressed) {
        selectPresses(false); // the subscription has ended
        return;
    }
    const auto button = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event).detail;
    if (button != leftButton && button != rightButton)
        return;
    const auto pointer = m_connection->reply<xcb_query_pointer_reply_t>(
        xcb_query_pointer(m_connection->get(), m_connection->root()));
    if (pointer)
        (*pressed)(logicalRect(QRect(pointer->root_x, pointer->root_y, 1, 1)).topLeft());
}

} // namespace talvera
