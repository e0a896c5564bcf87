// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11PanelDesktop.h"

#include "linux/x11/windows/EwmhWindows.h"
#include "linux/x11/windows/boundingShape.h"
#include "linux/x11/windows/logicalRect.h"

#include <QGuiApplication>

#include <xcb/xinput.h>

#include <array>
#include <utility>

namespace talvera {

namespace {

constexpr std::uint32_t everyWorkspace = 0xffffffff;
constexpr std::uint32_t leftButton = 1;
constexpr std::uint32_t rightButton = 3;

/// The toolkit has a connection of its own, and what it has asked for there may still wait to be sent.
void sendRequestsOfToolkit() {
    if (const auto* toolkit = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        xcb_flush(toolkit->connection());
}

} // namespace

X11PanelDesktop::X11PanelDesktop()
    : m_x11(X11Connection::open()) {
    if (!m_x11)
        return;
    // A client that names no version gets no events of these.
    m_x11->reply<xcb_input_xi_query_version_reply_t>(xcb_input_xi_query_version(m_x11->get(), 2, 2));
    m_readable = std::make_unique<QSocketNotifier>(m_x11->descriptor(), QSocketNotifier::Read);
    QObject::connect(m_readable.get(), &QSocketNotifier::activated, m_readable.get(),
                     [this] { readEvents(); });
}

X11PanelDesktop::~X11PanelDesktop() = default;

bool X11PanelDesktop::isComposited() {
    if (!m_x11)
        return false;
    const auto compositor = m_x11->reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(m_x11->get(), m_x11->atom("_NET_WM_CM_S0")));
    return compositor && compositor->owner != XCB_WINDOW_NONE;
}

void X11PanelDesktop::adopt(std::uint32_t window) {
    if (!m_x11)
        return;
    sendRequestsOfToolkit(); // the window has just been made
    const std::array states{m_x11->atom("_NET_WM_STATE_SKIP_TASKBAR"),
                            m_x11->atom("_NET_WM_STATE_SKIP_PAGER"), m_x11->atom("_NET_WM_STATE_ABOVE"),
                            m_x11->atom("_NET_WM_STATE_STICKY")};
    xcb_change_property(m_x11->get(), XCB_PROP_MODE_REPLACE, window, m_x11->atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, states.size(), states.data());
    xcb_change_property(m_x11->get(), XCB_PROP_MODE_REPLACE, window, m_x11->atom("_NET_WM_DESKTOP"),
                        XCB_ATOM_CARDINAL, 32, 1, &everyWorkspace);
    m_x11->roundTrip(); // the window is shown over another connection next
}

void X11PanelDesktop::setShape(std::uint32_t window, const std::vector<QRect>& rectangles) {
    if (m_x11)
        setBoundingShape(*m_x11, window, rectangles);
}

void X11PanelDesktop::activate(std::uint32_t window) {
    if (!m_x11)
        return;
    EwmhWindows windows(*m_x11);
    if (windows.canActivate())
        windows.requestActivation(window);
    else
        xcb_set_input_focus(m_x11->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    m_x11->flush();
    // A press that came while we waited for answers has been read from the socket already.
    QMetaObject::invokeMethod(
        m_readable.get(), [this] { readEvents(); }, Qt::QueuedConnection);
}

/// Raw events come beside the ordinary ones: nobody misses a press because we see it.
Subscription X11PanelDesktop::watchPresses(std::function<void(QPoint place)> pressed) {
    auto observer = std::make_shared<std::function<void(QPoint)>>(std::move(pressed));
    m_pressed = observer;
    selectPresses(true);
    return Subscription(std::move(observer));
}

void X11PanelDesktop::selectPresses(bool selected) {
    if (!m_x11)
        return;
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1},
                selected ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS} : 0};
    xcb_input_xi_select_events(m_x11->get(), m_x11->root(), 1, &selection.head);
    m_x11->flush();
}

void X11PanelDesktop::readEvents() {
    while (const auto event = m_x11->pollEvent()) {
        if ((event->response_type & 0x7f) != XCB_GE_GENERIC)
            continue;
        const auto pressed = m_pressed.lock();
        if (!pressed) {
            selectPresses(false); // nobody listens any more
            continue;
        }
        const auto button = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(*event).detail;
        if (button != leftButton && button != rightButton)
            continue;
        const auto pointer =
            m_x11->reply<xcb_query_pointer_reply_t>(xcb_query_pointer(m_x11->get(), m_x11->root()));
        if (pointer)
            (*pressed)(logicalRect(QRect(pointer->root_x, pointer->root_y, 1, 1)).topLeft());
    }
    if (m_x11->isBroken())
        m_readable->setEnabled(false); // else it would wake us for ever
}

} // namespace talvera
