// SPDX-License-Identifier: MIT
#include "shell/panel/menuPanelFrame.h"

#include <algorithm>

namespace talvera {

namespace {

int rightOf(const QRect& area) {
    return area.x() + area.width();
}

int bottomOf(const QRect& area) {
    return area.y() + area.height();
}

/// The end of the desktop's panel: at the bottom of the screen if there is one, else at the top.
QRect cornerOfTrays(const ScreenArea& screen) {
    const bool panelBelow = bottomOf(screen.visible) < bottomOf(screen.whole);
    const bool panelAbove = screen.visible.y() > screen.whole.y();
    const int y = panelBelow && !panelAbove ? bottomOf(screen.visible) : screen.visible.y();
    return {rightOf(screen.visible), y, 0, 0};
}

} // namespace

QRect menuPanelFrame(const std::optional<QRect>& item, const ScreenArea& screen, int height) {
    const auto& visible = screen.visible;
    const auto anchor = item.value_or(cornerOfTrays(screen));
    if (!visible.isEmpty())
        height = std::min(height, visible.height() - 2 * menuPanelGap);

    int x = anchor.x() + anchor.width() / 2 - menuPanelWidth / 2;
    x = std::min(x, rightOf(visible) - menuPanelWidth - menuPanelGap);
    x = std::max(x, visible.x() + menuPanelGap);

    int y = bottomOf(anchor) + menuPanelGap;
    const bool fitsBelow = y + height + menuPanelGap <= bottomOf(visible);
    const bool moreRoomAbove = anchor.y() - visible.y() > bottomOf(visible) - bottomOf(anchor);
    if (!fitsBelow && moreRoomAbove)
        y = anchor.y() - height - menuPanelGap;
    y = std::min(y, bottomOf(visible) - height - menuPanelGap);
    y = std::max(y, visible.y() + menuPanelGap);
    return {x, y, menuPanelWidth, height};
}

} // namespace talvera
