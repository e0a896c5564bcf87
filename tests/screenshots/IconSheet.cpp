// SPDX-License-Identifier: MIT
#include "IconSheet.h"

#include "linux/support/SymbolPainter.h"
#include "views/controls/SymbolProvider.h"

#include <QPainter>

#include <array>

namespace talvera::test {

namespace {

const std::array symbols{
    "waveform.badge.microphone", "translate", "wand.and.sparkles", "mic.fill", "waveform",
    "exclamationmark.triangle"};
constexpr std::array sizes{16, 22, 24, 32, 48, 64};
constexpr int gap = 12;
constexpr QColor darkPanel{0x24, 0x24, 0x28};
constexpr QColor lightPanel{0xf0, 0xf0, 0xf2};

struct Panel {
    QColor background;
    QColor symbol;
};

} // namespace

void drawIconSheet(const QString& file) {
    constexpr std::array panels{Panel{darkPanel, TrayColors::onDark}, Panel{lightPanel, TrayColors::onLight},
                                Panel{darkPanel, TrayColors::onUnknown},
                                Panel{lightPanel, TrayColors::onUnknown}};
    int rowWidth = gap;
    for (const int size : sizes)
        rowWidth += size + gap;
    constexpr int rowHeight = sizes.back() + gap;
    const int panelHeight = rowHeight * static_cast<int>(symbols.size()) + gap;

    QImage sheet(rowWidth * static_cast<int>(panels.size()), panelHeight, QImage::Format_RGB32);
    QPainter painter(&sheet);
    int left = 0;
    for (const auto& panel : panels) {
        painter.fillRect(left, 0, rowWidth, panelHeight, panel.background);
        int y = gap;
        for (const auto* symbol : symbols) {
            int x = left + gap;
            for (const int size : sizes) {
                painter.drawImage(x, y + (sizes.back() - size) / 2,
                                  traySymbolImage(QString::fromLatin1(symbol), panel.symbol, size));
                x += size + gap;
            }
            y += rowHeight;
        }
        left += rowWidth;
    }
    painter.end();
    sheet.save(file);
}

} // namespace talvera::test
