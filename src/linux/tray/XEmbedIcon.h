// SPDX-License-Identifier: MIT
#pragma once

#include "linux/tray/SymbolPainter.h"
#include "linux/x11/server/X11Connection.h"

#include <QRect>
#include <QSocketNotifier>

#include <functional>
#include <memory>
#include <optional>

namespace talvera {

/// Our icon in the X11 tray: a small window that the tray takes into itself. Follows trays that come, go and
/// change. Main thread only.
class XEmbedIcon {
public:
    explicit XEmbedIcon(SymbolPainter painter);
    ~XEmbedIcon();
    XEmbedIcon(const XEmbedIcon&) = delete;
    XEmbedIcon& operator=(const XEmbedIcon&) = delete;

    void setSymbol(const QString& name);
    void setTitle(const QString& text);

    /// Shows the icon wherever there is a tray, from now on.
    void setShown(bool shown);

    /// There is a tray on this screen.
    bool hasTray() const { return m_tray != XCB_WINDOW_NONE; }

    /// Where the icon is, in the server's pixels; nothing while no tray shows it.
    std::optional<QRect> frame();

    /// The icon was clicked, with any button.
    std::function<void()> onClick;

private:
    /// How the pixels of a window are made up.
    struct Look {
        std::uint8_t depth = 0;
        xcb_visualid_t visual = 0;
        bool translucent = false; ///< the tray lays the window over its background
    };

    void readEvents();
    void handle(const xcb_generic_event_t& event);
    void findTray();
    void dock();
    void undock();
    void askForSquare(int edge);
    void readColors();
    Look lookForTray();
    void draw();
    std::optional<QImage> background();
    QColor colorOn(const std::optional<QImage>& background) const;

    SymbolPainter m_painter;
    std::unique_ptr<X11Connection> m_x11;
    std::unique_ptr<QSocketNotifier> m_readable;
    QString m_symbol;
    QString m_title;
    bool m_shown = false;
    xcb_window_t m_tray = XCB_WINDOW_NONE;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    xcb_gcontext_t m_gc = XCB_NONE;
    xcb_colormap_t m_colormap = XCB_NONE;
    Look m_look;
    QSize m_size;
    int m_askedEdge = 0;
    std::optional<QColor> m_foreground; ///< what the tray asks for
};

} // namespace talvera
