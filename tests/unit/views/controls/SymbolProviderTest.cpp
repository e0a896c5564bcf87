// SPDX-License-Identifier: MIT
#include "views/controls/SymbolProvider.h"
#include "linux/support/SymbolPainter.h"

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

TEST(SymbolProvider, waveformInTheSizesOfPanels_hasBarsThatFillWholePixels) {
    for (const int pixels : {16, 22, 24, 32, 44, 48}) {
        const auto image = traySymbolImage("waveform", Qt::red, pixels);
        int bars = 0;
        int before = 0;
        for (int x = 0; x < pixels; ++x) {
            const int alpha = image.pixelColor(x, pixels / 2).alpha();
            EXPECT_TRUE(alpha == 0 || alpha == 255) << x << " of " << pixels;
            bars += alpha > before ? 1 : 0;
            before = alpha;
        }
        EXPECT_EQ(bars, 5) << pixels;
    }
}

TEST(SymbolProvider, symbolsOfTheTray_areCentredInTheSizesOfPanels) {
    for (const char* name : {"waveform", "waveform.badge.microphone", "mic.fill", "exclamationmark.triangle",
                             "translate", "wand.and.sparkles"}) {
        for (const int pixels : {16, 22, 24, 32, 48, 64}) {
            const auto image = traySymbolImage(name, Qt::red, pixels);
            QRect inked;
            for (int y = 0; y < pixels; ++y) {
                for (int x = 0; x < pixels; ++x) {
                    if (image.pixelColor(x, y).alpha() > 127)
                        inked |= QRect(x, y, 1, 1);
                }
            }
            const QPoint offCentre = inked.topLeft() + inked.bottomRight() - QPoint(pixels - 1, pixels - 1);
            EXPECT_LE(offCentre.manhattanLength(), std::max(2, pixels / 7)) << name << " " << pixels;
            EXPECT_GE(std::max(inked.width(), inked.height()), pixels * 7 / 10) << name << " " << pixels;
        }
    }
}

TEST(SymbolProvider, crispSize_isTheLargestThatFits) {
    const std::pair<int, int> cases[]{{12, 12}, {16, 16}, {21, 16}, {23, 22},
                                      {28, 24}, {40, 32}, {60, 48}, {200, 64}};
    for (const auto& [room, size] : cases)
        EXPECT_EQ(crispSize(room), size);
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
