// SPDX-License-Identifier: MIT
#include "views/hud/WaveformCanvas.h"

#include "views/hud/fillCapsule.h"

#include <QPainter>

namespace talvera {

namespace {

/// The bars' motion counts from the year 2001, in seconds since 1970.
constexpr double referenceDate = 978307200;

constexpr double topOpacity = 0.95;
constexpr double bottomOpacity = 0.55;

} // namespace

WaveformCanvas::WaveformCanvas(QQuickItem* parent)
    : QQuickPaintedItem(parent) {}

void WaveformCanvas::setBarCount(int count) {
    m_barCount = count;
    setImplicitWidth(count * (Waveform::barWidth + Waveform::barGap) - Waveform::barGap);
    update();
}

void WaveformCanvas::setAnimating(bool animating) {
    m_animating = animating;
    update();
}

void WaveformCanvas::setLevel(double level) {
    m_level = level;
    m_shownLevel.goTo(level, m_now); // drawn at the next advance
}

void WaveformCanvas::setColor(const QColor& color) {
    m_color = color;
    update();
}

void WaveformCanvas::advance(double now) {
    m_now = Instant(seconds(now / 1000));
    update();
}

void WaveformCanvas::paint(QPainter* painter) {
    const double time = toSeconds(m_now.time_since_epoch()) - referenceDate;
    const Waveform wave(time, m_shownLevel.at(m_now));
    const double scale = painter->deviceTransform().m11(); // pixels of the screen
    const auto pixels = (size() * scale).toSize();
    if (m_picture.size() != pixels)
        m_picture = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
    m_picture.fill(Qt::transparent);
    for (int bar = 0; bar < m_barCount; ++bar) {
        const double tall = m_animating ? wave.barHeight(bar) : Waveform::atRest;
        const QRectF shape(bar * (Waveform::barWidth + Waveform::barGap), (height() - tall) / 2,
                           Waveform::barWidth, tall);
        fillCapsule(m_picture, QRectF(shape.topLeft() * scale, shape.size() * scale), m_color,
                    topOpacity * m_color.alphaF(), bottomOpacity * m_color.alphaF());
    }
    painter->setWorldMatrixEnabled(false);
    painter->drawImage(0, 0, m_picture);
}

} // namespace talvera
