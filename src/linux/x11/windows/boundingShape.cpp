// SPDX-License-Identifier: MIT
#include "linux/x11/windows/boundingShape.h"

#include "linux/x11/server/X11Connection.h"

#include <xcb/shape.h>

namespace talvera {

namespace {

void cut(X11Connection& connection, xcb_shape_sk_t kind, xcb_window_t window,
         const std::vector<QRect>& rectangles) {
    std::vector<xcb_rectangle_t> shape;
    shape.reserve(rectangles.size());
    for (const auto& rectangle : rectangles)
        shape.push_back({std::int16_t(rectangle.x()), std::int16_t(rectangle.y()),
                         std::uint16_t(rectangle.width()), std::uint16_t(rectangle.height())});
    if (shape.empty())
        xcb_shape_mask(connection.get(), XCB_SHAPE_SO_SET, kind, window, 0, 0, XCB_PIXMAP_NONE);
    else
        xcb_shape_rectangles(connection.get(), XCB_SHAPE_SO_SET, kind, XCB_CLIP_ORDERING_UNSORTED, window, 0,
                             0, std::uint32_t(shape.size()), shape.data());
    connection.roundTrip();
}

} // namespace

void setBoundingShape(X11Connection& connection, xcb_window_t window, const std::vector<QRect>& rectangles) {
    cut(connection, XCB_SHAPE_SK_BOUNDING, window, rectangles);
}

void setInputShape(X11Connection& connection, xcb_window_t window, const std::vector<QRect>& rectangles) {
    cut(connection, XCB_SHAPE_SK_INPUT, window, rectangles);
}

} // namespace talvera
