// SPDX-License-Identifier: MIT
#include "views/SymbolProvider.h"

#include <QColor>
#include <QDir>

#include <gtest/gtest.h>

using namespace talvera;

namespace {

/// Those that are more than half covered.
int coveredPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y).alpha() > 127 ? 1 : 0;
    }
    return count;
}

int inkedPixels(const QImage& image, const QColor& color) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

TEST(SymbolProvider, everySymbol_isDrawnInTheColourAtEverySize) {
    const auto symbols = QDir(":/qt/qml/Talvera/symbols").entryList({"*.svg"});
    EXPECT_GE(symbols.size(), 7);
    for (const auto& file : symbols) {
        for (const int pixels : {16, 28, 64}) {
            const auto image = symbolImage(QString(file).chopped(4), Qt::red, pixels);
            EXPECT_EQ(image.size(), QSize(pixels, pixels));
            EXPECT_GT(coveredPixels(image), pixels * pixels / 60) << qPrintable(file) << pixels;
            EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0) << qPrintable(file);
        }
    }
}

TEST(SymbolProvider, unknownName_isTransparent) {
    const auto image = symbolImage("no.such.symbol", Qt::red, 16);
    EXPECT_EQ(inkedPixels(image, Qt::transparent), 16 * 16);
}

TEST(SymbolProvider, request_readsNameColourAndSize) {
    QSize size;
    const auto image = SymbolProvider().requestImage("info.circle.fill/#ff0000ff", &size, QSize(20, 20));
    EXPECT_EQ(size, QSize(20, 20));
    EXPECT_GT(inkedPixels(image, Qt::blue), 50);
}

} // namespace
