// SPDX-License-Identifier: MIT
#include "views/hud/fillCapsule.h"

#include <algorithm>
#include <cmath>

namespace talvera {

namespace {

QRgb premultiplied(QRgb color, double alpha) {
    const auto part = [alpha](int channel) { return int(alpha * channel + 0.5); };
    return qRgba(part(qRed(color)), part(qGreen(color)), part(qBlue(color)), part(255));
}

/// As std::clamp(), also when rounding has put the limits the wrong way round.
double within(double value, double least, double most) {
    return std::max(std::min(value, most), least);
}

} // namespace

void fillCapsule(QImage& image, const QRectF& capsule, const QColor& color, double top, double bottom) {
    const QRgb opaque = color.rgb();
    // A pixel is covered by how near its centre is to the line that the round ends leave.
    const double radius = std::min(capsule.width(), capsule.height()) / 2;
    const QRectF line = capsule.adjusted(radius, radius, -radius, -radius);
    const int firstRow = std::max(int(std::floor(capsule.top())), 0);
    const int lastRow = std::min(int(std::ceil(capsule.bottom())), image.height()) - 1;
    const int firstColumn = std::max(int(std::floor(capsule.left())), 0);
    const int lastColumn = std::min(int(std::ceil(capsule.right())), image.width()) - 1;

    for (int y = firstRow; y <= lastRow; ++y) {
        const double middle = y + 0.5;
        const double down = std::clamp((middle - capsule.top()) / capsule.height(), 0.0, 1.0);
        const double opacity = top + (bottom - top) * down;
        const double beyond = middle - within(middle, line.top(), line.bottom());
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = firstColumn; x <= lastColumn; ++x) {
            const double centre = x + 0.5;
            const double aside = centre - within(centre, line.left(), line.right());
            const double distance = std::sqrt(aside * aside + beyond * beyond);
            const double coverage = std::clamp(radius + 0.5 - distance, 0.0, 1.0);
            row[x] = premultiplied(opaque, opacity * coverage);
        }
    }
}

} // namespace talvera
