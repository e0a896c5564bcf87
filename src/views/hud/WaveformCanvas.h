// SPDX-License-Identifier: MIT
#pragma once

#include "views/hud/Waveform.h"

#include <QColor>
#include <QImage>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace talvera {

/// Draws the bars of WaveformBars.qml.
class WaveformCanvas : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int barCount MEMBER m_barCount WRITE setBarCount)
    Q_PROPERTY(bool animating MEMBER m_animating WRITE setAnimating)
    Q_PROPERTY(double level MEMBER m_level WRITE setLevel)
    Q_PROPERTY(QColor color MEMBER m_color WRITE setColor)
public:
    explicit WaveformCanvas(QQuickItem* parent = nullptr);

    void setBarCount(int count);
    void setAnimating(bool animating);
    void setLevel(double level);
    void setColor(const QColor& color);

    /// Draws the bars as they are at that moment, in milliseconds since 1970.
    Q_INVOKABLE void advance(double now);

    void paint(QPainter* painter) override;

private:
    int m_barCount = 0;
    bool m_animating = false;
    double m_level = 0;
    QColor m_color;
    EasedLevel m_shownLevel;
    Instant m_now{};
    QImage m_picture; ///< kept for its memory
};

} // namespace talvera
