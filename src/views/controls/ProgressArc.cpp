// SPDX-License-Identifier: MIT
#include "views/controls/ProgressArc.h"

#include "views/controls/Plane.h"

#include <QPainter>
#include <QPen>
#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>

namespace talvera {

namespace {

constexpr int wholeTurn = 360 * 16; ///< QPainter counts in sixteenths of a degree, against the clock
constexpr int top = 90 * 16;

} // namespace

ProgressArc::ProgressArc(QQuickItem* parent)
    : QQuickItem(parent) {
    setFlag(ItemHasContents);
    connect(this, &ProgressArc::lookChanged, this, &QQuickItem::update);
}

void ProgressArc::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    QQuickItem::itemChange(change, data);
}

QImage ProgressArc::picture(QSize size) const {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double thickness = m_thickness * size.width() / width();
    const double inset = thickness / 2;
    const auto ring = QRectF(QPointF(), QSizeF(size)).adjusted(inset, inset, -inset, -inset);
    painter.setPen(QPen(m_track, thickness));
    painter.drawEllipse(ring);
    const auto length = static_cast<int>(std::clamp(m_progress, 0.0, 1.0) * wholeTurn);
    if (length > 0) {
        painter.setPen(QPen(m_color, thickness, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(ring, top - static_cast<int>(m_start * 16), -length);
    }
    return image;
}

QSGNode* ProgressArc::updatePaintNode(QSGNode* node, UpdatePaintNodeData*) {
    delete node; // and its picture
    const double ratio = window()->effectiveDevicePixelRatio();
    const auto place = wholePixels(mapRectToScene(boundingRect()), ratio);
    if (place.isEmpty())
        return nullptr;
    auto* image = window()->createImageNode();
    image->setOwnsTexture(true);
    image->setFiltering(QSGTexture::Nearest);
    image->setTexture(
        window()->createTextureFromImage(picture(place.size()), QQuickWindow::TextureHasAlphaChannel));
    image->setSourceRect(QRectF(QPointF(), QSizeF(place.size())));
    image->setRect(mapRectFromScene(QRectF(QPointF(place.topLeft()) / ratio, QSizeF(place.size()) / ratio)));
    return image;
}

} // namespace talvera
