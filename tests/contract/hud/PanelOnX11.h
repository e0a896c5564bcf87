// SPDX-License-Identifier: MIT
#pragma once

#include "InMemoryPreferenceStore.h"
#include "concurrency/QtMainActor.h"
#include "linux/x11/server/X11Server.h"
#include "linux/x11/windows/X11OverlayDesktop.h"
#include "persistence/AppSettings.h"
#include "platform/desktop/DesktopAppearance.h"
#include "views/ViewEngine.h"
#include "views/hud/QuickHUDPanel.h"

namespace talvera::test {

/// The real panel with all that it works with.
struct PanelOnX11 {
    /// The panel's place, in pixels of the screen, as the X server has it.
    QRect geometry();
    /// The screen's pixel at a place of the panel.
    QColor pixel(const QPoint& place);
    /// Waits until the panel is on the screen and its content has faded in.
    bool awaitPaint();
    /// Lets the event loop run for so long.
    void run(Duration duration);

    QtMainActor actor;
    InMemoryPreferenceStore store;
    AppSettings settings{store};
    DesktopAppearance appearance;
    ViewEngine views{appearance};
    X11OverlayDesktop desktop{X11Server()};
    StateHolder holder;
    QuickHUDPanel panel{{actor, views, desktop, holder, settings}};
};

} // namespace talvera::test
