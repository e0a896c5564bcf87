// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11Server.h"

#include <QColor>
#include <QPoint>
#include <QSize>

#include <memory>
#include <optional>

namespace talvera::test {

/// A tray of the X11 kind, in the upper left corner of the screen. Takes one icon in.
class XEmbedTray {
public:
    /// How the tray wants its icons.
    enum class Icons { Opaque, Translucent };

    explicit XEmbedTray(const QColor& background, const QSize& iconSize = {24, 24},
                        Icons icons = Icons::Opaque);
    ~XEmbedTray();
    XEmbedTray(const XEmbedTray&) = delete;
    XEmbedTray& operator=(const XEmbedTray&) = delete;

    /// Does what is asked of it by now. Answers whether an icon is in it.
    bool hasIcon();

    /// Gives the icon another size.
    void setIconSize(const QSize& size);

    /// The icon's pixel at this place, once it can be seen.
    std::optional<QColor> pixel(const QPoint& place);

    static constexpr QPoint iconPlace{4, 4}; ///< on the screen

private:
    void wantTranslucentIcons();
    void announce();
    void takeIn(xcb_window_t icon);

    std::unique_ptr<X11Connection> m_x11 = X11Server().connect();
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_window_t m_icon = XCB_WINDOW_NONE;
    QSize m_iconSize;
};

} // namespace talvera::test
