// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace talvera::test {

/// Paints any symbol as a full square.
inline QImage square(const QString&, const QColor& color, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

} // namespace talvera::test
