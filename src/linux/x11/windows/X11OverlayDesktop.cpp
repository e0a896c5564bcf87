// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11OverlayDesktop.h"

#include "linux/support/logicalRect.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/server/compositor.h"
#include "linux/x11/server/eventType.h"
#include "linux/x11/windows/X11OverlayWindow.h"
#include "linux/x11/windows/nativeWindow.h"

#include <QWindow>

#include <xcb/xfixes.h>

namespace talvera {

X11OverlayDesktop::X11OverlayDesktop(const X11Server& server)
    : m_connection(server.connect())
    , m_windows(*m_connection)
    , m_workArea(*m_connection, m_windows)
    , m_stack(*m_connection)
    , m_compositorSelection(compositorSelection(*m_connection))
    , m_pump(
          *m_connection, [this](const xcb_generic_event_t& event) { handle(event); },
          [this] { m_stack.settle(); }) {
    watchCompositor();
}

X11OverlayDesktop::~X11OverlayDesktop() = default;

std::unique_ptr<OverlayWindow> X11OverlayDesktop::adopt(QWindow& window) {
    window.setFlag(Qt::X11BypassWindowManagerHint);
    return std::make_unique<X11OverlayWindow>(*m_connection, m_stack, nativeWindow(window));
}

std::optional<QRect> X11OverlayDesktop::workArea() {
    const auto area = m_workArea.now();
    return area ? std::optional(logicalRect(*area)) : std::nullopt;
}

void X11OverlayDesktop::watchCompositor() {
    const auto* fixes = m_connection->extension(xcb_xfixes_id);
    const auto version = fixes ? m_connection->reply<xcb_xfixes_query_version_reply_t>(
                                     xcb_xfixes_query_version(m_connection->get(), 5, 0))
                               : nullptr;
    if (version) {
        m_selectionEvent = fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
        xcb_xfixes_select_selection_input(m_connection->get(), m_connection->root(), m_compositorSelection,
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                              XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    isComposited.set(talvera::isComposited(*m_connection));
}

void X11OverlayDesktop::handle(const xcb_generic_event_t& event) {
    m_stack.note(event);
    if (eventType(event) != m_selectionEvent)
        return;
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (const bool owned = change.owner != XCB_WINDOW_NONE;
        change.selection == m_compositorSelection && owned != isComposited.get())
        isComposited.set(owned);
}

} // namespace talvera
