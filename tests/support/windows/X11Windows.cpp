// SPDX-License-Identifier: MIT
#include "X11Windows.h"

#include "linux/x11/server/X11Server.h"

#include <algorithm>
#include <stdexcept>

namespace talvera::test {

X11Windows::X11Windows()
    : m_x11(X11Server().connect()) {
    if (m_x11->isBroken())
        throw std::runtime_error("no X server");
}

std::optional<QRect> X11Windows::viewable(const std::string& windowClass, QSize least) const {
    return find(m_x11->root(), windowClass, least);
}

std::optional<QRect> X11Windows::find(xcb_window_t window, const std::string& windowClass,
                                      QSize least) const {
    const auto classes = m_x11->reply<xcb_get_property_reply_t>(
        xcb_get_property(m_x11->get(), 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 64));
    const auto attributes =
        m_x11->reply<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes(m_x11->get(), window));
    if (!attributes)
        return std::nullopt;
    if (classes && attributes->map_state == XCB_MAP_STATE_VIEWABLE) {
        const std::string found(static_cast<const char*>(xcb_get_property_value(classes.get())),
                                static_cast<std::size_t>(xcb_get_property_value_length(classes.get())));
        const auto geometry = m_x11->reply<xcb_get_geometry_reply_t>(xcb_get_geometry(m_x11->get(), window));
        const auto place = m_x11->reply<xcb_translate_coordinates_reply_t>(
            xcb_translate_coordinates(m_x11->get(), window, m_x11->root(), 0, 0));
        if (found.rfind(windowClass + '\0', 0) == 0 && geometry && place &&
            geometry->width >= least.width() && geometry->height >= least.height())
            return QRect(place->dst_x, place->dst_y, geometry->width, geometry->height);
    }
    const auto tree = m_x11->reply<xcb_query_tree_reply_t>(xcb_query_tree(m_x11->get(), window));
    for (int child = 0; tree && child < xcb_query_tree_children_length(tree.get()); ++child) {
        if (const auto found = find(xcb_query_tree_children(tree.get())[child], windowClass, least))
            return found;
    }
    return std::nullopt;
}

bool X11Windows::hasKeyboard(const QRect& frame) const {
    const auto focus = m_x11->reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(m_x11->get()));
    if (!focus || focus->focus <= XCB_INPUT_FOCUS_POINTER_ROOT)
        return false;
    const auto geometry =
        m_x11->reply<xcb_get_geometry_reply_t>(xcb_get_geometry(m_x11->get(), focus->focus));
    const auto place = m_x11->reply<xcb_translate_coordinates_reply_t>(
        xcb_translate_coordinates(m_x11->get(), focus->focus, m_x11->root(), 0, 0));
    return geometry && place && QRect(place->dst_x, place->dst_y, geometry->width, geometry->height) == frame;
}

bool X11Windows::isDrawnOn(const QRect& area) const {
    const auto image = m_x11->reply<xcb_get_image_reply_t>(xcb_get_image(
        m_x11->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_x11->root(), std::int16_t(area.x()),
        std::int16_t(area.y()), std::uint16_t(area.width()), std::uint16_t(area.height()), ~0U));
    if (!image)
        return false;
    const auto* pixels = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(image.get()));
    const auto count = xcb_get_image_data_length(image.get()) / int(sizeof *pixels);
    return std::any_of(pixels, pixels + count, [first = pixels[0]](auto pixel) { return pixel != first; });
}

bool X11Windows::hasTray() const {
    const auto owner = m_x11->reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(m_x11->get(), m_x11->atom("_NET_SYSTEM_TRAY_S0")));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

QSize X11Windows::screen() const {
    const auto root = m_x11->reply<xcb_get_geometry_reply_t>(xcb_get_geometry(m_x11->get(), m_x11->root()));
    return root ? QSize(root->width, root->height) : QSize();
}

} // namespace talvera::test
