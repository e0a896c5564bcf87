// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/X11EventPump.h"
#include "linux/x11/windows/EwmhWindows.h"
#include "linux/x11/windows/X11OverlayStack.h"
#include "linux/x11/windows/X11WorkArea.h"
#include "platform/desktop/OverlayDesktop.h"

#include <memory>

namespace talvera {

class X11Server;

/// Overlays on an X11 desktop, over a connection of their own. When the server has gone nothing is done and
/// there is no monitor.
class X11OverlayDesktop final : public OverlayDesktop {
public:
    explicit X11OverlayDesktop(const X11Server& server);
    ~X11OverlayDesktop() override;

    std::optional<QRect> workArea() override;

    /// The desktop outlives the overlay.
    std::unique_ptr<OverlayWindow> adopt(QWindow& window) override;

private:
    void watchCompositor();
    void handle(const xcb_generic_event_t& event);

    const std::unique_ptr<X11Connection> m_connection;
    EwmhWindows m_windows;
    X11WorkArea m_workArea;
    X11OverlayStack m_stack;
    xcb_atom_t m_compositorSelection;
    int m_selectionEvent = -1; ///< the type of the events that tell of the compositor
    X11EventPump m_pump;
};

} // namespace talvera
