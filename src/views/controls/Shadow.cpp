// SPDX-License-Identifier: MIT
#include "views/controls/Shadow.h"

#include "views/controls/Plane.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
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
constexpr int faint = 3; ///< so many standard deviations from its edge a shadow is as dark as it gets

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

/// How much of a blurred edge's shadow meets a point, by its distance. It comes from a table, since it is
/// asked twice for each pixel of a rim, and the panel waits for the picture.
class SoftEdge {
public:
    explicit SoftEdge(double blur)
        : m_scale(steps / blur) {
        for (std::size_t i = 0; i < m_table.size(); ++i)
            m_table[i] = 0.5 * std::erfc((static_cast<double>(i) / steps - faint) / std::numbers::sqrt2);
    }

    double at(double distance) const {
        const double place = distance * m_scale + faint * steps;
        if (place <= 0)
            return 1;
        if (place >= last)
            return 0;
        const auto index = static_cast<std::size_t>(place);
        const double beyond = place - static_cast<double>(index);
        return m_table[index] + (m_table[index + 1] - m_table[index]) * beyond;
    }

private:
    static constexpr int steps = 64; ///< to the standard deviation
    static constexpr int last = 2 * faint * steps;

    double m_scale;
    std::array<double, last + 1> m_table;
};

} // namespace

QImage shadowPicture(const QSize& size, double radius, int reach, double ratio, const QColor& color) {
    QImage image(size + QSize(2 * reach, 2 * reach), QImage::Format_ARGB32_Premultiplied);
    const int width = image.width();
    const int height = image.height();
    const RoundPlane plane{size.width() / 2.0, size.height() / 2.0, radius};
    const SoftEdge farEdge(far.blur * ratio);
    const SoftEdge nearEdge(near.blur * ratio);
    const double darkest = color.alphaF();
    const auto alphaAt = [&](double x, double y) {
        const double ofFar = far.strength * darkest * farEdge.at(plane.distance(x, y - far.drop * ratio));
        const double ofNear = near.strength * darkest * nearEdge.at(plane.distance(x, y - near.drop * ratio));
        return 1 - (1 - ofFar) * (1 - ofNear);
    };
    const auto colored = [&](double alpha) {
        const auto part = [alpha](int channel) { return static_cast<int>(std::lround(alpha * channel)); };
        return qRgba(part(color.red()), part(color.green()), part(color.blue()), part(255));
    };
    // Rows that are far from both ends are alike, and so are columns.
    const double ends = radius + (far.drop + faint * far.blur) * ratio;
    const int firstAlike = reach + static_cast<int>(std::ceil(ends));
    const int lastAlike = height - 1 - firstAlike;
    const int half = (width + 1) / 2;
    const int different = std::min(half, firstAlike + 1);
    for (int row = 0; row < height; ++row) {
        auto* const pixels = reinterpret_cast<QRgb*>(image.scanLine(row));
        if (row > firstAlike && row <= lastAlike) {
            std::memcpy(pixels, image.constScanLine(row - 1), static_cast<std::size_t>(image.bytesPerLine()));
            continue;
        }
        for (int column = 0; column < different; ++column) {
            const auto pixel = colored(alphaAt(column + 0.5 - width / 2.0, row + 0.5 - height / 2.0));
            pixels[column] = pixel;
            pixels[width - 1 - column] = pixel;
        }
        if (different < half)
            std::fill(pixels + different, pixels + width - different, pixels[different - 1]);
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
