// SPDX-License-Identifier: MIT
#include "views/controls/SymbolProvider.h"

#include <QColor>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <array>

namespace talvera {

namespace {

struct Grid {
    int pixels = 0;
    QLatin1String folder;
};

QString drawingOn(QLatin1String folder, const QString& name) {
    return QStringLiteral(":/qt/qml/Talvera/symbols/") + folder + name + QStringLiteral(".svg");
}

QImage painted(const QString& drawing, const QColor& color, int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(drawing);
    if (!renderer.isValid())
        return image;
    QPainter painter(&image);
    renderer.render(&painter);
    // The drawings are black: only their shape counts.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace

QImage symbolImage(const QString& name, const QColor& color, int pixels) {
    return painted(drawingOn({}, name), color, pixels);
}

/// The symbols are drawn three times, each fitted to the pixels of a size that panels have, at 100 % and at
/// 200 %. Where there are many pixels none is needed that fits.
QImage traySymbolImage(const QString& name, const QColor& color, int pixels) {
    constexpr std::array grids{Grid{24, {}}, Grid{22, QLatin1String("22/")}, Grid{16, QLatin1String("16/")}};
    for (const auto& grid : grids) {
        const auto fitted = drawingOn(grid.folder, name);
        if (pixels % grid.pixels == 0 && pixels <= 2 * grid.pixels && QFile::exists(fitted))
            return painted(fitted, color, pixels);
    }
    return symbolImage(name, color, pixels);
}

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const auto slash = id.indexOf(QLatin1Char('/'));
    const auto pixels = std::clamp(std::max(requestedSize.width(), requestedSize.height()), 1, 512);
    *size = QSize(pixels, pixels);
    return symbolImage(id.left(slash), QColor(id.mid(slash + 1)), pixels);
}

} // namespace talvera
