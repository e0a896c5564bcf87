// SPDX-License-Identifier: MIT
#include "views/controls/ProgressArc.h"

#include <QPainter>
#include <QPen>

#include <algorithm>

namespace talvera {

namespace {

constexpr int wholeTurn = 360 * 16; ///< QPainter counts in sixteenths of a degree, against the clock
constexpr int top = 90 * 16;

} // namespace

ProgressArc::ProgressArc(QQuickItem* parent)
    : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &ProgressArc::lookChanged, this, [this] { update(); });
}

void ProgressArc::paint(QPainter* painter) {
    const double inset = m_thickness / 2;
    const auto ring = QRectF(QPointF(), size()).adjusted(inset, inset, -inset, -inset);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(m_track, m_thickness));
    painter->drawEllipse(ring);
    const auto length = static_cast<int>(std::clamp(m_progress, 0.0, 1.0) * wholeTurn);
    if (length == 0)
        return;
    painter->setPen(QPen(m_color, m_thickness, Qt::SolidLine, Qt::RoundCap));
    painter->drawArc(ring, top - static_cast<int>(m_start * 16), -length);
}

} // namespace talvera
