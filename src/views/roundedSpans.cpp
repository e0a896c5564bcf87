// SPDX-License-Identifier: MIT
#include "views/roundedSpans.h"

#include <algorithm>
#include <cmath>

namespace talvera {

std::vector<QRect> roundedSpans(const QRectF& rectangle, double radius) {
    std::vector<QRect> spans;
    radius = std::min({radius, rectangle.width() / 2, rectangle.height() / 2});
    const int top = int(std::ceil(rectangle.top() - 0.5));
    const int bottom = int(std::ceil(rectangle.bottom() - 0.5));
    for (int y = top; y < bottom; ++y) {
        // How far the row's centre reaches into a round corner, above or below.
        const double middle = y + 0.5;
        const double into =
            std::max({rectangle.top() + radius - middle, middle - rectangle.bottom() + radius, 0.0});
        const double inset = radius - std::sqrt(std::max(radius * radius - into * into, 0.0));
        const int left = int(std::ceil(rectangle.left() + inset - 0.5));
        const int right = int(std::ceil(rectangle.right() - inset - 0.5));
        if (right <= left)
            continue;
        if (!spans.empty() && spans.back().left() == left && spans.back().width() == right - left)
            spans.back().setBottom(y);
        else
            spans.push_back(QRect(left, y, right - left, 1));
    }
    return spans;
}

} // namespace talvera
