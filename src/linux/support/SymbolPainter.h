// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QString>

#include <functional>

namespace talvera {

/// Draws the symbol of this name in one colour on a transparent square of so many pixels.
using SymbolPainter = std::function<QImage(const QString& name, const QColor& color, int pixels)>;

/// The largest size within `pixels` that symbols are fitted to; `pixels` itself where even the smallest is
/// too large.
constexpr int crispSize(int pixels) {
    int crisp = pixels;
    for (const int fitted : {16, 22, 24, 32, 44, 48, 64}) {
        if (fitted <= pixels)
            crisp = fitted;
    }
    return crisp;
}

namespace TrayColors {
inline constexpr QColor onDark{0xf4, 0xf4, 0xf6};
inline constexpr QColor onLight{0x2a, 0x2a, 0x30};
/// Where it isn't known what lies behind: as far from black as from white.
inline constexpr QColor onUnknown{0x7d, 0x79, 0xf2};
} // namespace TrayColors

} // namespace talvera
