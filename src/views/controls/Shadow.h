// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace talvera {

/// The soft shadow of a plane with round corners: one that falls far below it, and one that lies close
/// around it. `size` is the plane's and `reach` what the picture adds on each side, both with `radius` in
/// device pixels, of which `ratio` make a unit. The alpha of `color` is the shadow's where it is darkest.
QImage shadowPicture(const QSize& size, double radius, int reach, double ratio, const QColor& color);

/// The shadow of what fills this item. It is drawn around the item, `reach` far, which needs the room.
class Shadow : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY lookChanged)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY lookChanged)

public:
    static constexpr int reach = 24; ///< in device-independent pixels

    explicit Shadow(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void lookChanged();

protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;

private:
    QColor m_color = Qt::black;
    double m_radius = 0;
    bool m_isStale = true; ///< the picture
};

} // namespace talvera
