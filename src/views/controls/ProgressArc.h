// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace talvera {

/// A ring, and on it an arc that begins at the top and goes round as far as `progress` says.
class ProgressArc : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// 0 to 1.
    Q_PROPERTY(double progress MEMBER m_progress NOTIFY lookChanged)
    /// Degrees from the top at which the arc begins.
    Q_PROPERTY(double start MEMBER m_start NOTIFY lookChanged)
    Q_PROPERTY(double thickness MEMBER m_thickness NOTIFY lookChanged)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY lookChanged)
    Q_PROPERTY(QColor track MEMBER m_track NOTIFY lookChanged)

public:
    explicit ProgressArc(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void lookChanged();

private:
    double m_progress = 0;
    double m_start = 0;
    double m_thickness = 8;
    QColor m_color;
    QColor m_track;
};

} // namespace talvera
