// SPDX-License-Identifier: MIT
#include "HUDOnScreen.h"

namespace talvera::test {

std::optional<QRect> HUDOnScreen::place() {
    auto* const x = m_x11->get();
    const auto tree = m_x11->reply<xcb_query_tree_reply_t>(xcb_query_tree(x, m_x11->root()));
    if (!tree)
        return std::nullopt;
    const auto* windows = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto attributes =
            m_x11->reply<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes(x, windows[i]));
        const auto geometry = m_x11->reply<xcb_get_geometry_reply_t>(xcb_get_geometry(x, windows[i]));
        if (attributes && geometry && attributes->override_redirect &&
            attributes->map_state == XCB_MAP_STATE_VIEWABLE && geometry->width == 560 &&
            geometry->height == 72)
            return QRect(geometry->x, geometry->y, geometry->width, geometry->height);
    }
    return std::nullopt;
}

std::vector<std::uint32_t> HUDOnScreen::pixels() {
    const auto area = place();
    if (!area)
        return {};
    const auto image = m_x11->reply<xcb_get_image_reply_t>(xcb_get_image(
        m_x11->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_x11->root(), std::int16_t(area->x()),
        std::int16_t(area->y()), std::uint16_t(area->width()), std::uint16_t(area->height()), ~0U));
    if (!image)
        return {};
    const auto* data = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
    std::vector<std::uint32_t> pixels(data, data + xcb_get_image_data_length(image.get()) / 4);
    for (auto& pixel : pixels)
        pixel &= 0xffffff;
    return pixels;
}

xcb_window_t HUDOnScreen::activeWindow() {
    const auto active = m_x11->property(m_x11->root(), m_x11->atom("_NET_ACTIVE_WINDOW"));
    return active.empty() ? xcb_window_t(XCB_WINDOW_NONE) : active.front();
}

} // namespace talvera::test
