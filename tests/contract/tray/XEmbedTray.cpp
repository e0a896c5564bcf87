// SPDX-License-Identifier: MIT
#include "XEmbedTray.h"

#include <array>
#include <stdexcept>

namespace talvera::test {

namespace {

constexpr std::uint16_t width = 200;
constexpr std::uint16_t height = 100;
constexpr std::uint32_t dockRequest = 0;
constexpr std::uint8_t translucentDepth = 32;

} // namespace

XEmbedTray::XEmbedTray(const QColor& background, const QSize& iconSize, Icons icons)
    : m_iconSize(iconSize) {
    auto* const x11 = m_x11->get();
    m_window = xcb_generate_id(x11);
    const std::array<std::uint32_t, 3> values{background.rgb() & 0xffffffU, 1,
                                              XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    xcb_create_window(x11, XCB_COPY_FROM_PARENT, m_window, m_x11->root(), 0, 0, width, height, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    xcb_map_window(x11, m_window);
    if (icons == Icons::Translucent)
        wantTranslucentIcons();
    xcb_set_selection_owner(x11, m_window, m_x11->atom("_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
    announce();
}

XEmbedTray::~XEmbedTray() {
    xcb_destroy_window(m_x11->get(), m_window);
    m_x11->roundTrip();
}

void XEmbedTray::wantTranslucentIcons() {
    auto depths = xcb_screen_allowed_depths_iterator(&m_x11->screen());
    while (depths.rem > 0 && depths.data->depth != translucentDepth)
        xcb_depth_next(&depths);
    if (depths.rem == 0)
        throw std::runtime_error("nothing is translucent on this screen");
    const xcb_visualid_t visual = xcb_depth_visuals_iterator(depths.data).data->visual_id;
    xcb_change_property(m_x11->get(), XCB_PROP_MODE_REPLACE, m_window, m_x11->atom("_NET_SYSTEM_TRAY_VISUAL"),
                        XCB_ATOM_VISUALID, 32, 1, &visual);
}

void XEmbedTray::announce() {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_x11->root();
    message.type = m_x11->atom("MANAGER");
    message.data.data32[1] = m_x11->atom("_NET_SYSTEM_TRAY_S0");
    message.data.data32[2] = m_window;
    xcb_send_event(m_x11->get(), 0, m_x11->root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    m_x11->flush();
}

bool XEmbedTray::hasIcon() {
    m_x11->roundTrip();
    while (const auto event = m_x11->pollEvent()) {
        const int type = event->response_type & 0x7f;
        if (type == XCB_CLIENT_MESSAGE) {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(*event);
            if (message.type == m_x11->atom("_NET_SYSTEM_TRAY_OPCODE") &&
                message.data.data32[1] == dockRequest)
                takeIn(message.data.data32[2]);
        }
        if (type == XCB_DESTROY_NOTIFY &&
            reinterpret_cast<const xcb_destroy_notify_event_t&>(*event).window == m_icon)
            m_icon = XCB_WINDOW_NONE;
    }
    return m_icon != XCB_WINDOW_NONE;
}

void XEmbedTray::takeIn(xcb_window_t icon) {
    m_icon = icon;
    xcb_reparent_window(m_x11->get(), icon, m_window, std::int16_t(iconPlace.x()),
                        std::int16_t(iconPlace.y()));
    setIconSize(m_iconSize);
    xcb_map_window(m_x11->get(), icon);
    m_x11->roundTrip(); // from here on we hear of its end
}

void XEmbedTray::setIconSize(const QSize& size) {
    m_iconSize = size;
    const std::array values{std::uint32_t(size.width()), std::uint32_t(size.height())};
    xcb_configure_window(m_x11->get(), m_icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
    m_x11->flush();
}

std::optional<QColor> XEmbedTray::pixel(const QPoint& place) {
    if (!hasIcon())
        return std::nullopt;
    const auto image = m_x11->reply<xcb_get_image_reply_t>(
        xcb_get_image(m_x11->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_icon, std::int16_t(place.x()),
                      std::int16_t(place.y()), 1, 1, ~0U));
    if (!image || xcb_get_image_data_length(image.get()) != int(sizeof(QRgb)))
        return std::nullopt;
    return QColor(*reinterpret_cast<const QRgb*>(xcb_get_image_data(image.get())) | 0xff000000U);
}

} // namespace talvera::test
