// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace talvera {

/// The whole device pixels that a rectangle of the scene takes at `ratio` device pixels to the unit: as many
/// as come nearest to its size, from where its corner comes nearest to. So equal rectangles look equal
/// wherever they stand, which rounding each edge would not give.
QRect wholePixels(const QRectF& scene, double ratio);

/// A rectangle, round at its corners if it is told so, with a hairline inside of its edge if it is given a
/// width. It is drawn on whole device pixels at every scale; Qt's own Rectangle is torn at 125 and 175 %.
class Plane : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY lookChanged)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY lookChanged)
    Q_PROPERTY(QColor outline MEMBER m_outline NOTIFY lookChanged)
    /// In device-independent pixels; what is not 0 is at least one device pixel.
    Q_PROPERTY(double outlineWidth MEMBER m_outlineWidth NOTIFY lookChanged)

public:
    explicit Plane(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void lookChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

private:
    /// What a picture is made of, in device pixels.
    struct Look {
        QSize size;
        QColor color;
        QColor outline;
        double radius = 0;
        int outlineWidth = 0;

        bool operator==(const Look&) const = default;
    };

    static QImage picture(const Look& look);
    double pixelRatio() const;
    QRect place() const;
    Look look(QSize size) const;
    void followScene();

    QColor m_color = Qt::white;
    QColor m_outline = Qt::transparent;
    double m_radius = 0;
    double m_outlineWidth = 0;

    QRect m_drawnPlace;
    Look m_drawnLook;
    QMetaObject::Connection m_frames;
};

} // namespace talvera
