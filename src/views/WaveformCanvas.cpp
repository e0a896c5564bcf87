// SPDX-License-Identifier: MIT
#include "views/WaveformCanvas.h"

#include <QLinearGradient>
#include <QPainter>

namespace talvera {

namespace {

/// The bars' motion counts from the year 2001, in seconds since 1970.
constexpr double referenceDate = 978307200;

} // namespace

WaveformCanvas::WaveformCanvas(QQuickItem* parent)
    : QQuickPaintedItem(parent) {
    setAntialiasing(true);
}

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
    const double level = m_shownLevel.at(m_now);
    auto top = m_color;
    top.setAlphaF(0.95F * m_color.alphaF());
    auto bottom = m_color;
    bottom.setAlphaF(0.55F * m_color.alphaF());

    painter->setPen(Qt::NoPen);
    for (int bar = 0; bar < m_barCount; ++bar) {
        const double tall = m_animating ? Waveform::barHeight(bar, time, level) : Waveform::atRest;
        const QRectF shape(bar * (Waveform::barWidth + Waveform::barGap), (height() - tall) / 2,
                           Waveform::barWidth, tall);
        QLinearGradient gradient(shape.topLeft(), shape.bottomLeft());
        gradient.setColorAt(0, top);
        gradient.setColorAt(1, bottom);
        painter->setBrush(gradient);
        painter->drawRoundedRect(shape, Waveform::barWidth / 2, Waveform::barWidth / 2);
    }
}

} // namespace talvera
