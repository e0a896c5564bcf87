// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace talvera {

/// A ring, and on it an arc that begins at the top and goes round as far as `progress` says. It is drawn in
/// device pixels at every scale, also in a window that was made smaller to fit on the screen.
class ProgressArc : public QQuickItem {
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

Q_SIGNALS:
    void lookChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

private:
    QImage picture(QSize size) const;

    double m_progress = 0;
    double m_start = 0;
    double m_thickness = 8;
    QColor m_color;
    QColor m_track;
};

} // namespace talvera
