// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QRectF>

#include <vector>

namespace talvera {

/// The pixels of a rectangle with round corners, as few rectangles from the top to the bottom. A pixel
/// belongs to it when its centre does.
std::vector<QRect> roundedSpans(const QRectF& rectangle, double radius);

} // namespace talvera
