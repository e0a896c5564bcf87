// SPDX-License-Identifier: MIT
#include "views/controls/Plane.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <cmath>

namespace talvera {

namespace {

constexpr int largestSide = 8192; // pixels; no screen of ours has more

QPainterPath rounded(const QRectF& area, double radius) {
    const double whole = std::clamp(radius, 0.0, std::min(area.width(), area.height()) / 2);
    QPainterPath path;
    path.addRoundedRect(area, whole, whole);
    return path;
}

} // namespace

QRect wholePixels(const QRectF& scene, double ratio) {
    const auto side = [ratio](double length) {
        if (length <= 0)
            return 0;
        return std::clamp(static_cast<int>(std::lround(length * ratio)), 1, largestSide);
    };
    return {QPoint(static_cast<int>(std::lround(scene.x() * ratio)),
                   static_cast<int>(std::lround(scene.y() * ratio))),
            QSize(side(scene.width()), side(scene.height()))};
}

Plane::Plane(QQuickItem* parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &Plane::lookChanged, this, &QQuickItem::update);
}

void Plane::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemSceneChange) {
        disconnect(m_frames);
        // An item gets no signal when one of its ancestors has moved.
        if (data.window)
            m_frames = connect(data.window, &QQuickWindow::afterAnimating, this, [this] { followScene(); });
    } else if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
    QQuickItem::itemChange(change, data);
}

void Plane::followScene() {
    if (isVisible() && place() != m_drawnPlace)
        update();
}

double Plane::pixelRatio() const {
    return window()->effectiveDevicePixelRatio();
}

QRect Plane::place() const {
    return wholePixels(mapRectToScene(boundingRect()), pixelRatio());
}

Plane::Look Plane::look(QSize size) const {
    const auto toScene = itemTransform(nullptr, nullptr); // what is too large for the screen is scaled
    const double unit = std::hypot(toScene.m11(), toScene.m12()) * pixelRatio();
    const int outline =
        m_outlineWidth > 0 ? std::max(1, static_cast<int>(std::lround(m_outlineWidth * unit))) : 0;
    return {size, m_color, m_outline, m_radius * unit, outline};
}

QImage Plane::picture(const Look& look) {
    QImage image(look.size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF whole(QPointF(), QSizeF(look.size));
    const auto shape = rounded(whole, look.radius);
    painter.fillPath(shape, look.color);
    if (look.outlineWidth > 0) {
        const double width = look.outlineWidth;
        const auto within = rounded(whole.adjusted(width, width, -width, -width), look.radius - width);
        painter.fillPath(shape.subtracted(within), look.outline);
    }
    return image;
}

QSGNode* Plane::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    auto* image = static_cast<QSGImageNode*>(node);
    m_drawnPlace = place();
    const auto wanted = look(m_drawnPlace.size());
    const bool nothing = m_color.alpha() == 0 && (wanted.outlineWidth == 0 || m_outline.alpha() == 0);
    if (m_drawnPlace.isEmpty() || nothing) {
        delete image;
        return nullptr;
    }
    if (!image) {
        image = window()->createImageNode();
        image->setOwnsTexture(true);
        image->setFiltering(QSGTexture::Nearest);
    }
    if (!image->texture() || wanted != m_drawnLook) {
        m_drawnLook = wanted;
        image->setTexture(
            window()->createTextureFromImage(picture(wanted), QQuickWindow::TextureHasAlphaChannel));
        image->setSourceRect(QRectF(QPointF(), QSizeF(wanted.size)));
    }
    const double ratio = pixelRatio();
    image->setRect(mapRectFromScene(
        QRectF(QPointF(m_drawnPlace.topLeft()) / ratio, QSizeF(m_drawnPlace.size()) / ratio)));
    return image;
}

} // namespace talvera
