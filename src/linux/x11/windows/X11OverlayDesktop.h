// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/windows/EwmhWindows.h"
#include "linux/x11/windows/WorkAreas.h"
#include "platform/desktop/OverlayDesktop.h"

#include <QSocketNotifier>

#include <memory>
#include <set>
#include <vector>

namespace talvera {

class X11Connection;
class X11OverlayWindow;

/// Overlays on an X11 desktop, over a connection of their own.
class X11OverlayDesktop final : public OverlayDesktop {
public:
    /// Without an X server, or with one that has gone, nothing is done and there is no monitor.
    X11OverlayDesktop();
    ~X11OverlayDesktop() override;

    std::optional<QRect> workArea() override;
    std::unique_ptr<OverlayWindow> adopt(std::uint32_t window) override;

private:
    friend class X11OverlayWindow;

    void watchCompositor();
    bool isOurs(xcb_window_t window) const;
    void readEvents();
    void watchStack(X11OverlayWindow& window, bool watches);
    std::vector<QRect> monitors();
    std::optional<QRect> focusedWindow();
    QRect pointer();
    std::vector<Strut> struts();

    std::unique_ptr<X11Connection> m_connection;
    std::optional<EwmhWindows> m_windows;
    xcb_atom_t m_compositorSelection = XCB_ATOM_NONE;
    int m_firstFixesEvent = -1;
    bool m_hasMonitors = false; ///< the server knows of monitors
    std::set<X11OverlayWindow*> m_onTop;
    std::unique_ptr<QSocketNotifier> m_readable;
};

} // namespace talvera
