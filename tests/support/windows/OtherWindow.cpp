// SPDX-License-Identifier: MIT
#include "OtherWindow.h"

#include <stdexcept>

namespace talvera::test {

OtherWindow::OtherWindow(const QRect& area, const QColor& color, const Wishes& wishes) {
    auto* const x = m_connection->get();
    m_window = xcb_generate_id(x);
    const std::uint32_t values[] = {color.rgb() & 0xffffff, XCB_EVENT_MASK_BUTTON_PRESS |
                                                                XCB_EVENT_MASK_KEY_PRESS |
                                                                XCB_EVENT_MASK_EXPOSURE};
    xcb_create_window(x, XCB_COPY_FROM_PARENT, m_window, m_connection->root(), std::int16_t(area.x()),
                      std::int16_t(area.y()), std::uint16_t(area.width()), std::uint16_t(area.height()), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    // Where it is said to be, not where the window manager would like it: the user's own wish.
    const std::uint32_t userPosition = 1;
    std::vector<std::uint32_t> hints(18, 0);
    hints[0] = userPosition;
    hints[1] = std::uint32_t(area.x());
    hints[2] = std::uint32_t(area.y());
    set("WM_NORMAL_HINTS", m_connection->atom("WM_SIZE_HINTS"), hints);
    set("_MOTIF_WM_HINTS", m_connection->atom("_MOTIF_WM_HINTS"), {2, 0, 0, 0, 0}); // no frame
    if (wishes.fullScreen)
        set("_NET_WM_STATE", XCB_ATOM_ATOM, {m_connection->atom("_NET_WM_STATE_FULLSCREEN")});
    if (wishes.bottomStrut > 0) {
        set("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, {m_connection->atom("_NET_WM_WINDOW_TYPE_DOCK")});
        set("_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL,
            {0, 0, 0, std::uint32_t(wishes.bottomStrut), 0, 0, 0, 0, 0, 0, 0,
             std::uint32_t(m_connection->screen().width_in_pixels - 1)});
    }
    xcb_map_window(x, m_window);
    m_connection->flush();
    const auto shown = [this] {
        readEvents();
        return m_exposed;
    };
    if (!eventually(shown))
        throw std::runtime_error("the window doesn't come up");
}

void OtherWindow::activate() {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_window;
    message.type = m_connection->atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 2; // as a pager asks
    xcb_send_event(m_connection->get(), 0, m_connection->root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    m_connection->flush();
    if (!eventually([this] { return isActive() && hasFocus(); }))
        throw std::runtime_error("the window isn't activated");
}

bool OtherWindow::isActive() {
    const auto active =
        m_connection->property(m_connection->root(), m_connection->atom("_NET_ACTIVE_WINDOW"));
    return !active.empty() && active.front() == m_window;
}

bool OtherWindow::hasFocus() {
    const auto focus =
        m_connection->reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(m_connection->get()));
    return focus && focus->focus == m_window;
}

QPoint OtherWindow::middle() {
    const auto size =
        m_connection->reply<xcb_get_geometry_reply_t>(xcb_get_geometry(m_connection->get(), m_window));
    const auto place = m_connection->reply<xcb_translate_coordinates_reply_t>(
        xcb_translate_coordinates(m_connection->get(), m_window, m_connection->root(), 0, 0));
    if (!size || !place)
        throw std::runtime_error("the window is gone");
    return {place->dst_x + size->width / 2, place->dst_y + size->height / 2};
}

int OtherWindow::awaitClicks(int expected) {
    eventually([&] { return clicks() >= expected; });
    return m_clicks;
}

int OtherWindow::clicks() {
    m_connection->roundTrip(); // what has met it by now stands in the queue then
    readEvents();
    return m_clicks;
}

int OtherWindow::awaitKeys(int expected) {
    eventually([&] { return keys() >= expected; });
    return m_keys;
}

int OtherWindow::keys() {
    m_connection->roundTrip();
    readEvents();
    return m_keys;
}

void OtherWindow::readEvents() {
    while (const auto event = m_connection->pollEvent()) {
        const int type = event->response_type & 0x7f;
        m_clicks += type == XCB_BUTTON_PRESS ? 1 : 0;
        m_keys += type == XCB_KEY_PRESS ? 1 : 0;
        m_exposed = m_exposed || type == XCB_EXPOSE;
    }
}

void OtherWindow::set(const char* property, xcb_atom_t type, const std::vector<std::uint32_t>& items) {
    xcb_change_property(m_connection->get(), XCB_PROP_MODE_REPLACE, m_window, m_connection->atom(property),
                        type, 32, std::uint32_t(items.size()), items.data());
}

} // namespace talvera::test
