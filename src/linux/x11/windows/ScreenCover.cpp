// SPDX-License-Identifier: MIT
#include "linux/x11/windows/ScreenCover.h"

#include "linux/x11/server/X11Connection.h"

#include <xcb/shape.h>

#include <algorithm>
#include <optional>

namespace talvera {

namespace {

/// In pixels. Lockers cover whole monitors; menus and notifications over a small window are smaller.
constexpr int leastWidth = 600;
constexpr int leastHeight = 400;
constexpr int deepestNesting = 10; ///< of a window in the frames that window managers put around it

struct Area {
    int left;
    int top;
    int right;
    int bottom;

    bool contains(const Area& other) const {
        return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
    }
};

Area areaOf(const xcb_get_geometry_reply_t& geometry) {
    const int border = 2 * geometry.border_width;
    return {geometry.x, geometry.y, geometry.x + geometry.width + border,
            geometry.y + geometry.height + border};
}

/// The windows directly below the root, the lowest first.
std::vector<xcb_window_t> stack(X11Connection& connection) {
    const auto tree =
        connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(connection.get(), connection.root()));
    if (!tree)
        return {};
    const auto* windows = xcb_query_tree_children(tree.get());
    return {windows, windows + xcb_query_tree_children_length(tree.get())};
}

/// The outermost window around `window`, itself if the window manager puts no frame around it.
xcb_window_t frameOf(X11Connection& connection, xcb_window_t window) {
    for (int depth = 0; depth < deepestNesting; ++depth) {
        const auto tree = connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(connection.get(), window));
        if (!tree || tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE)
            break;
        window = tree->parent;
    }
    return window;
}

bool takesInput(X11Connection& connection, xcb_window_t window) {
    const auto shape = connection.reply<xcb_shape_get_rectangles_reply_t>(
        xcb_shape_get_rectangles(connection.get(), window, XCB_SHAPE_SK_INPUT));
    return shape && xcb_shape_get_rectangles_rectangles_length(shape.get()) > 0;
}

} // namespace

bool isCovered(X11Connection& connection, xcb_window_t window) {
    const auto frame = frameOf(connection, window);
    const auto frameQuestion = xcb_get_geometry(connection.get(), frame);
    const auto windows = stack(connection);
    const auto frameGeometry = connection.reply<xcb_get_geometry_reply_t>(frameQuestion);
    const auto position = std::find(windows.begin(), windows.end(), frame);
    if (!frameGeometry || position == windows.end())
        return false;
    const Area screen{0, 0, connection.screen().width_in_pixels, connection.screen().height_in_pixels};
    auto covered = areaOf(*frameGeometry);
    covered = {std::max(covered.left, screen.left), std::max(covered.top, screen.top),
               std::min(covered.right, screen.right), std::min(covered.bottom, screen.bottom)};

    struct Question {
        xcb_window_t window;
        xcb_get_window_attributes_cookie_t attributes;
        xcb_get_geometry_cookie_t geometry;
    };
    std::vector<Question> questions;
    for (auto above = position + 1; above != windows.end(); ++above)
        questions.push_back({*above, xcb_get_window_attributes(connection.get(), *above),
                             xcb_get_geometry(connection.get(), *above)});
    bool found = false;
    for (const auto& question : questions) {
        const auto attributes = connection.reply<xcb_get_window_attributes_reply_t>(question.attributes);
        const auto geometry = connection.reply<xcb_get_geometry_reply_t>(question.geometry);
        if (found || !attributes || !geometry || !attributes->override_redirect ||
            attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        found = geometry->width >= leastWidth && geometry->height >= leastHeight &&
                areaOf(*geometry).contains(covered) && takesInput(connection, question.window);
    }
    return found;
}

} // namespace talvera
