// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QQuickImageProvider>

namespace talvera {

/// `name` drawn in one colour on a transparent square of `pixels`. An unknown name gives a transparent one.
QImage symbolImage(const QString& name, const QColor& color, int pixels);

/// The same for the symbols of the item in the tray, where each pixel counts.
QImage traySymbolImage(const QString& name, const QColor& color, int pixels);

/// Serves "image://symbol/NAME/COLOUR" to the views.
class SymbolProvider final : public QQuickImageProvider {
public:
    SymbolProvider()
        : QQuickImageProvider(QQuickImageProvider::Image) {}

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace talvera
