// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/SymbolPainter.h"
#include "linux/x11/server/X11EventPump.h"
#include "platform/desktop/TrayIcon.h"

#include <QSize>

#include <memory>
#include <optional>

namespace talvera {

class X11Server;

/// Our icon in the X11 tray: a small window that the tray takes into itself. Follows trays that come, go and
/// change; where the server has gone there is none. Main thread only.
class XEmbedIcon final : public TrayIcon {
public:
    XEmbedIcon(const X11Server& server, SymbolPainter painter);
    ~XEmbedIcon() override;

    void setSymbol(const QString& name) override;
    void setTitle(const QString& text) override;
    void setShown(bool shown) override;
    bool hasTray() const override { return m_tray != XCB_WINDOW_NONE; }
    std::optional<QRect> frame() override;

private:
    /// How the pixels of a window are made up.
    struct Look {
        std::uint8_t depth = 0;
        xcb_visualid_t visual = 0;
        bool translucent = false; ///< the tray lays the window over its background
    };

    void handle(const xcb_generic_event_t& event);
    void findTray();
    void dock();
    void createWindow();
    void describeWindow();
    void askToBeTakenIn();
    void undock();
    void askForSquare(int edge);
    void readColors();
    Look lookForTray();
    void draw();
    std::optional<QImage> background(const QRect& place);
    QColor colorOn(const std::optional<QImage>& background) const;

    SymbolPainter m_painter;
    const std::unique_ptr<X11Connection> m_x11;
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
    X11EventPump m_pump;
};

} // namespace talvera
