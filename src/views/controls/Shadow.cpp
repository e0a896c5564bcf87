// SPDX-License-Identifier: MIT
#include "views/controls/Shadow.h"

#include "views/controls/Plane.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <utility>

namespace talvera {

namespace {

/// One of the lights that the shadow is of, in device-independent pixels.
struct Light {
    double drop;     ///< how far below the plane its shadow lies
    double blur;     ///< the standard deviation of its edge
    double strength; ///< of the shadow's alpha
};

constexpr Light far{6, 8, 1};
constexpr Light near{1, 1.5, 0.5};
constexpr double faint = 3; ///< so many standard deviations from its edge a shadow is as dark as it gets

/// The plane, with the middle of its coordinates in its own.
struct RoundPlane {
    double halfWidth;
    double halfHeight;
    double radius;

    /// From its edge to a point, negative within it.
    double distance(double x, double y) const {
        const double beyondX = std::abs(x) - halfWidth + radius;
        const double beyondY = std::abs(y) - halfHeight + radius;
        return std::hypot(std::max(beyondX, 0.0), std::max(beyondY, 0.0)) +
               std::min(std::max(beyondX, beyondY), 0.0) - radius;
    }
};

/// How much of a blurred edge's shadow meets a point at this distance from it.
double softened(double distance, double blur) {
    return 0.5 * std::erfc(distance / (blur * std::numbers::sqrt2));
}

} // namespace

QImage shadowPicture(const QSize& size, double radius, int reach, double ratio, const QColor& color) {
    QImage image(size + QSize(2 * reach, 2 * reach), QImage::Format_ARGB32_Premultiplied);
    const int width = image.width();
    const int height = image.height();
    const RoundPlane plane{size.width() / 2.0, size.height() / 2.0, radius};
    const auto alphaAt = [&](double x, double y) {
        double light = 1;
        for (const auto& [drop, blur, strength] : {far, near})
            light *=
                1 - strength * color.alphaF() * softened(plane.distance(x, y - drop * ratio), blur * ratio);
        return 1 - light;
    };
    const auto colored = [&](double alpha) {
        const auto part = [alpha](int channel) { return static_cast<int>(std::lround(alpha * channel)); };
        return qRgba(part(color.red()), part(color.green()), part(color.blue()), part(255));
    };
    // Rows that are far from both ends are alike.
    const double ends = radius + (far.drop + faint * far.blur) * ratio;
    const int firstAlike = reach + static_cast<int>(std::ceil(ends));
    const int lastAlike = height - 1 - firstAlike;
    for (int row = 0; row < height; ++row) {
        auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(row));
        if (row > firstAlike && row <= lastAlike) {
            std::memcpy(pixels, image.constScanLine(row - 1), static_cast<std::size_t>(image.bytesPerLine()));
            continue;
        }
        for (int column = 0; column < (width + 1) / 2; ++column) {
            const auto pixel = colored(alphaAt(column + 0.5 - width / 2.0, row + 0.5 - height / 2.0));
            pixels[column] = pixel;
            pixels[width - 1 - column] = pixel;
        }
    }
    return image;
}

Shadow::Shadow(QQuickItem* parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &Shadow::lookChanged, this, [this] {
        m_isStale = true;
        update();
    });
}

void Shadow::geometryChange(const QRectF& now, const QRectF& before) {
    if (now.size() != before.size()) {
        m_isStale = true;
        update();
    }
    QQuickItem::geometryChange(now, before);
}

void Shadow::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemDevicePixelRatioHasChanged) {
        m_isStale = true;
        update();
    }
    QQuickItem::itemChange(change, data);
}

QSGNode* Shadow::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* image = static_cast<QSGImageNode*>(node);
    if (size().isEmpty()) {
        delete image;
        return nullptr;
    }
    const double ratio = window()->effectiveDevicePixelRatio();
    const int pixels = static_cast<int>(std::lround(reach * ratio));
    const auto place = wholePixels(mapRectToScene(boundingRect()), ratio);
    if (!image) {
        image = window()->createImageNode();
        image->setOwnsTexture(true);
        image->setFiltering(QSGTexture::Nearest);
        m_isStale = true;
    }
    if (std::exchange(m_isStale, false)) {
        const auto picture = shadowPicture(place.size(), m_radius * ratio, pixels, ratio, m_color);
        image->setTexture(window()->createTextureFromImage(picture, QQuickWindow::TextureHasAlphaChannel));
        image->setSourceRect(QRectF(QPointF(), QSizeF(picture.size())));
    }
    const auto around = place.adjusted(-pixels, -pixels, pixels, pixels);
    image->setRect(
        mapRectFromScene(QRectF(QPointF(around.topLeft()) / ratio, QSizeF(around.size()) / ratio)));
    return image;
}

} // namespace talvera
