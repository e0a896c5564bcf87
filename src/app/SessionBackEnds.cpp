// SPDX-License-Identifier: MIT
#include "app/SessionBackEnds.h"

#include "linux/tray/TrayStatusItem.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/keys/X11EventTapFactory.h"
#include "linux/x11/keys/X11KeyboardLayout.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "linux/x11/windows/EwmhWorkspace.h"
#include "linux/x11/windows/X11OverlayDesktop.h"
#include "linux/x11/windows/X11PanelDesktop.h"
#include "platform/system/Directories.h"
#include "views/controls/SymbolProvider.h"

namespace talvera {

SessionOffer SessionOffer::open() {
    return {.x11 = X11Connection::open()};
}

SessionBackEnds chooseBackEnds(const SessionOffer& offer, const BackEndParts& parts) {
    const auto& resources = parts.directories.resources;
    const auto companion = (resources + QStringLiteral("/talvera-x11-companion")).toStdString();
    const auto icons = resources + QStringLiteral("/icons");
    auto* x11 = offer.x11.get();
    SessionBackEnds chosen;
    chosen.eventTaps = std::make_unique<X11EventTapFactory>(parts.actor);
    chosen.keyboardLayout = std::make_unique<X11KeyboardLayout>();
    chosen.keyPoster = std::make_unique<X11KeyEventPoster>();
    chosen.pasteboard = std::make_unique<X11Pasteboard>(parts.console, companion);
    chosen.workspace = std::make_unique<EwmhWorkspace>(x11, parts.installed);
    chosen.access = std::make_unique<X11SessionAccess>(x11);
    chosen.overlays = std::make_unique<X11OverlayDesktop>();
    const auto panels = std::make_shared<X11PanelDesktop>();
    chosen.panels = panels;
    chosen.pointer = panels;
    chosen.statusItem = std::make_unique<TrayStatusItem>(parts.actor, traySymbolImage, icons);
    return chosen;
}

} // namespace talvera
