// SPDX-License-Identifier: MIT
#include "views/SymbolProvider.h"

#include <QColor>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

namespace talvera {

QImage symbolImage(const QString& name, const QColor& color, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer drawing(QStringLiteral(":/qt/qml/Talvera/symbols/%1.svg").arg(name));
    if (!drawing.isValid())
        return image;
    QPainter painter(&image);
    drawing.render(&painter);
    // The drawings are black: only their shape counts.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const auto slash = id.indexOf(QLatin1Char('/'));
    const auto pixels = std::clamp(std::max(requestedSize.width(), requestedSize.height()), 1, 512);
    *size = QSize(pixels, pixels);
    return symbolImage(id.left(slash), QColor(id.mid(slash + 1)), pixels);
}

} // namespace talvera
