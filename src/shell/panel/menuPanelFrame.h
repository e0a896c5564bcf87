// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <optional>

namespace talvera {

/// A screen, and what the desktop's own panels leave free of it.
struct ScreenArea {
    QRect whole;
    QRect visible;
};

inline constexpr int menuPanelWidth = 300;
inline constexpr int menuPanelLeastHeight = 100;
inline constexpr int menuPanelGap = 4; ///< to the item, and to the edges of the visible frame

/// Where the panel goes that hangs at `item`: below it, or above it where there is no room below; centred on
/// it, but within the visible frame. Without an item it goes to the corner where trays are. It is never
/// higher than the visible frame.
QRect menuPanelFrame(const std::optional<QRect>& item, const ScreenArea& screen, int height);

} // namespace talvera
