// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <array>
#include <optional>
#include <vector>

namespace talvera {

/// The room that a panel asks for at an edge of the screen, in pixels.
struct Strut {
    enum Edge { Left, Right, Top, Bottom };

    Edge edge;
    int size;
    int start; ///< along the edge, first and last pixel
    int end;
};

/// The struts in a window's _NET_WM_STRUT_PARTIAL (12 numbers) or _NET_WM_STRUT (4). Others are none.
std::vector<Strut> strutsOf(const std::vector<std::uint32_t>& property);

/// What the struts leave of `monitor`, which is a part of the screen. A strut that would leave nothing, or
/// that lies on another monitor, counts for nothing.
QRect withoutStruts(const QRect& monitor, const std::vector<Strut>& struts, const QSize& screen);

/// The one with most of `window`; none if it is on none.
std::optional<QRect> monitorOf(const std::vector<QRect>& monitors, const QRect& window);

} // namespace talvera
