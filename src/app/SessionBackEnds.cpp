// SPDX-License-Identifier: MIT
#include "app/SessionBackEnds.h"

#include "linux/clipboard/terminalProcess.h"
#include "linux/lonekeys/LoneKeyEventTaps.h"
#include "linux/lonekeys/LoneKeySessionAccess.h"
#include "linux/support/applicationId.h"
#include "linux/tray/TrayStatusItem.h"
#include "linux/wayland/client/Toplevels.h"
#include "linux/wayland/client/WaylandConnection.h"
#include "linux/wayland/clipboard/WaylandPasteboard.h"
#include "linux/wayland/gnome/GnomeEventTaps.h"
#include "linux/wayland/gnome/GnomeKeyEventPoster.h"
#include "linux/wayland/gnome/GnomePasteboard.h"
#include "linux/wayland/gnome/GnomeSessionAccess.h"
#include "linux/wayland/gnome/GnomeWorkspace.h"
#include "linux/wayland/kwin/KwinEventTaps.h"
#include "linux/wayland/kwin/KwinKeyEventPoster.h"
#include "linux/wayland/kwin/KwinSessionAccess.h"
#include "linux/wayland/kwin/KwinWorkspace.h"
#include "linux/wayland/sway/SwayEventTaps.h"
#include "linux/wayland/sway/SwaySessionAccess.h"
#include "linux/wayland/sway/SwayWorkspace.h"
#include "linux/wayland/toplevels/ToplevelSessionAccess.h"
#include "linux/wayland/toplevels/ToplevelWorkspace.h"
#include "linux/wayland/typing/WaylandKeyEventPoster.h"
#include "linux/x11/clipboard/X11Pasteboard.h"
#include "linux/x11/keys/X11EventTapFactory.h"
#include "linux/x11/keys/X11KeyboardLayout.h"
#include "linux/x11/typing/FocusedXProgram.h"
#include "linux/x11/typing/X11KeyEventPoster.h"
#include "linux/x11/windows/EwmhWorkspace.h"
#include "linux/x11/windows/GrabFocusFilter.h"
#include "linux/x11/windows/X11DisplayClaim.h"
#include "linux/x11/windows/X11OverlayDesktop.h"
#include "linux/x11/windows/X11PanelDesktop.h"
#include "linux/x11/windows/X11SessionAccess.h"
#include "linux/x11/windows/XEmbedIcon.h"
#include "linux/x11/windows/isBehindWayland.h"
#include "linux/x11/windows/prepareToolkitForX11.h"
#include "platform/absent/NoEventTaps.h"
#include "platform/absent/NoKeyEventPoster.h"
#include "platform/absent/NoKeyboardLayout.h"
#include "platform/absent/NoOverlayDesktop.h"
#include "platform/absent/NoPanelDesktop.h"
#include "platform/absent/NoPasteboard.h"
#include "platform/absent/NoPointerMonitor.h"
#include "platform/absent/NoSessionAccess.h"
#include "platform/absent/NoTrayIcon.h"
#include "platform/absent/NoWorkspace.h"
#include "platform/system/Directories.h"
#include "views/controls/SymbolProvider.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace talvera {

namespace {

std::unique_ptr<StatusItem> statusItem(const BackEndParts& parts, std::unique_ptr<TrayIcon> icon) {
    return std::make_unique<TrayStatusItem>(parts.actor, traySymbolImage,
                                            parts.directories.resources + QStringLiteral("/icons"),
                                            std::move(icon));
}

/// The program beside us that holds the clipboard.
std::string companion(const BackEndParts& parts, const char* name) {
    return (parts.directories.resources + QLatin1Char('/') + QLatin1String(name)).toStdString();
}

std::unique_ptr<Pasteboard> x11Pasteboard(const SessionOffer& offer, const BackEndParts& parts) {
    return std::make_unique<X11Pasteboard>(parts.console, companion(parts, "talvera-x11-companion"),
                                           offer.server);
}

/// What shows our own windows, which are X11 windows everywhere, and what their keys are called.
SessionBackEnds x11Windows(const SessionOffer& offer, const BackEndParts& parts) {
    const auto panels = std::make_shared<X11PanelDesktop>(offer.server);
    SessionBackEnds chosen;
    chosen.keyboardLayout = std::make_unique<X11KeyboardLayout>(offer.server);
    chosen.overlays = std::make_unique<X11OverlayDesktop>(offer.server);
    chosen.panels = panels;
    chosen.pointer = panels;
    chosen.statusItem = statusItem(parts, std::make_unique<XEmbedIcon>(offer.server, traySymbolImage));
    chosen.toolkitEvents = std::make_unique<GrabFocusFilter>();
    return chosen;
}

SessionBackEnds x11BackEnds(const SessionOffer& offer, const BackEndParts& parts) {
    auto chosen = x11Windows(offer, parts);
    chosen.eventTaps = std::make_unique<X11EventTapFactory>(parts.actor, offer.server);
    chosen.keyPoster = std::make_unique<X11KeyEventPoster>(offer.server);
    chosen.pasteboard = x11Pasteboard(offer, parts);
    chosen.workspace = std::make_unique<EwmhWorkspace>(*offer.x11, parts.installed);
    chosen.access = std::make_unique<X11SessionAccess>(*offer.x11);
    return chosen;
}

/// Whether the window that has the focus may show a terminal. It may where nothing is known of it.
bool mayTerminalHaveFocus(const QString& swaySocket) {
    const auto tree = SwayIpc(swaySocket).ask(SwayIpc::Request::GetTree);
    const auto windows = swayWindows(tree.value_or(QByteArray()));
    std::set<pid_t> programs;
    for (const auto& window : windows)
        programs.insert(window.pid);
    const auto focused = std::ranges::find_if(windows, &SwayWindow::hasFocus);
    return focused == windows.end() || mayShowTerminals(focused->pid, programs);
}

/// Without a way to the compositor's clipboard the X server's is there: some compositors hand on what it
/// holds.
std::unique_ptr<Pasteboard> waylandPasteboard(const SessionOffer& offer, const BackEndParts& parts) {
    if (!WaylandPasteboard::isPossible())
        return x11Pasteboard(offer, parts);
    return std::make_unique<WaylandPasteboard>(
        parts.console, companion(parts, "talvera-wayland-companion"),
        [socket = offer.swaySocket] { return socket.isEmpty() || mayTerminalHaveFocus(socket); });
}

/// Null where the compositor lets no program type.
std::unique_ptr<KeyEventPoster> waylandKeyPoster(const SessionOffer& offer) {
    const auto xProgram = std::make_shared<FocusedXProgram>(offer.server);
    return WaylandKeyEventPoster::open([xProgram] { xProgram->awaitReading(); });
}

/// Null where the user hasn't installed the helper that hears keys held alone. `chords` is the session's own
/// way to chords, and null where it has none.
std::unique_ptr<EventTapFactory> tapsOnKeysAlone(std::unique_ptr<EventTapFactory>& chords) {
    const auto helper = QStringLiteral("/usr/lib/talvera/talvera-lone-keys");
    if (!LoneKeyProgram::isInstalled(helper))
        return nullptr;
    return std::make_unique<LoneKeyEventTaps>(std::move(chords), helper);
}

SessionBackEnds withKeysAlone(SessionBackEnds chosen) {
    if (auto taps = tapsOnKeysAlone(chosen.eventTaps))
        chosen.eventTaps = std::move(taps);
    return chosen;
}

/// What the extension of GNOME Shell does for us, from the moment on when it is there. The Shell hands on the
/// clipboard of its X server itself.
SessionBackEnds gnomeBackEnds(const SessionOffer& offer, const BackEndParts& parts,
                              const std::shared_ptr<const ShellBus>& bus) {
    const auto view = std::make_shared<ShellView>(bus);
    auto chosen = x11Windows(offer, parts);
    chosen.eventTaps = std::make_unique<GnomeEventTaps>(bus, view);
    chosen.keyPoster = std::make_unique<GnomeKeyEventPoster>(bus, view);
    chosen.pasteboard = std::make_unique<GnomePasteboard>(x11Pasteboard(offer, parts));
    chosen.workspace = std::make_unique<GnomeWorkspace>(bus, view, parts.installed);
    chosen.access = std::make_unique<GnomeSessionAccess>(view);
    return chosen;
}

bool mayTerminalHaveFocus(const KwinWindows& windows) {
    const auto focused = windows.active();
    const auto programs = windows.programs();
    return !focused || mayShowTerminals(focused->pid, {programs.begin(), programs.end()});
}

/// Shortcuts and a script of ours in KWin. It lets us press keys where our desktop file is installed.
SessionBackEnds kwinBackEnds(const SessionOffer& offer, const BackEndParts& parts) {
    const auto guard = std::make_shared<KwinGuard>();
    const auto windows = std::make_shared<KwinWindows>(guard);
    const auto keyboard = std::make_shared<KwinKeyboard>();
    auto chosen = x11Windows(offer, parts);
    chosen.access = std::make_unique<KwinSessionAccess>(keyboard);
    chosen.keyPoster = std::make_unique<KwinKeyEventPoster>(keyboard, windows);
    chosen.pasteboard =
        std::make_unique<WaylandPasteboard>(parts.console, companion(parts, "talvera-wayland-companion"),
                                            [windows] { return mayTerminalHaveFocus(*windows); });
    chosen.eventTaps = std::make_unique<KwinEventTaps>(*chosen.keyboardLayout, guard);
    chosen.workspace = std::make_unique<KwinWorkspace>(windows, parts.installed);
    return chosen;
}

/// A way to type, the clipboard and the windows, which most compositors have for programs, and no keys: users
/// bind them to commands of ours.
SessionBackEnds anyCompositorsBackEnds(const SessionOffer& offer, const BackEndParts& parts) {
    auto chosen = x11Windows(offer, parts);
    chosen.keyPoster = waylandKeyPoster(offer);
    chosen.pasteboard = waylandPasteboard(offer, parts);
    const bool canType = chosen.keyPoster != nullptr;
    if (!canType)
        chosen.keyPoster = std::make_unique<NoKeyEventPoster>();
    chosen.eventTaps = tapsOnKeysAlone(chosen.eventTaps);
    const bool hearsKeys = chosen.eventTaps != nullptr;
    if (!hearsKeys)
        chosen.eventTaps = std::make_unique<NoEventTaps>();
    if (const std::shared_ptr windows = Toplevels::open(std::make_unique<WaylandConnection>())) {
        chosen.workspace = std::make_unique<ToplevelWorkspace>(windows, parts.installed);
        chosen.access = std::make_unique<ToplevelSessionAccess>(windows, canType, hearsKeys);
    } else {
        chosen.workspace = std::make_unique<NoWorkspace>(QString::fromLatin1(applicationId));
        if (hearsKeys)
            chosen.access = std::make_unique<LoneKeySessionAccess>(canType);
        else
            chosen.access = std::make_unique<NoSessionAccess>();
    }
    return chosen;
}

SessionBackEnds swayBackEnds(const SessionOffer& offer, const BackEndParts& parts) {
    auto chosen = x11Windows(offer, parts);
    chosen.keyPoster = waylandKeyPoster(offer);
    chosen.pasteboard = waylandPasteboard(offer, parts);
    const bool canType = chosen.keyPoster != nullptr;
    if (!canType)
        chosen.keyPoster = std::make_unique<NoKeyEventPoster>();
    chosen.eventTaps = std::make_unique<SwayEventTaps>(offer.swaySocket, *chosen.keyboardLayout);
    chosen.workspace = std::make_unique<SwayWorkspace>(SwayIpc(offer.swaySocket), parts.installed);
    chosen.access =
        std::make_unique<SwaySessionAccess>(SwayIpc(offer.swaySocket, SwayIpc::longPatience), canType);
    return chosen;
}

/// Of what the session's X server has, only what our own windows need: its keys and the windows of others are
/// those of X programs, and what works for these alone would lose what is said into all others.
SessionBackEnds waylandBackEnds(const SessionOffer& offer, const BackEndParts& parts) {
    if (SwayIpc(offer.swaySocket, SwayIpc::longPatience).isThere())
        return withKeysAlone(swayBackEnds(offer, parts));
    if (KwinSessionAccess::isKwinThere())
        return withKeysAlone(kwinBackEnds(offer, parts));
    const auto bus = std::make_shared<const ShellBus>();
    return bus->hasShell() ? withKeysAlone(gnomeBackEnds(offer, parts, bus))
                           : anyCompositorsBackEnds(offer, parts);
}

/// For a session of a kind that we know nothing of: the agent runs, and says what is lacking.
SessionBackEnds absentBackEnds(const BackEndParts& parts) {
    SessionBackEnds chosen;
    chosen.eventTaps = std::make_unique<NoEventTaps>();
    chosen.keyboardLayout = std::make_unique<NoKeyboardLayout>();
    chosen.keyPoster = std::make_unique<NoKeyEventPoster>();
    chosen.pasteboard = std::make_unique<NoPasteboard>();
    chosen.workspace = std::make_unique<NoWorkspace>(QString::fromLatin1(applicationId));
    chosen.access = std::make_unique<NoSessionAccess>();
    chosen.overlays = std::make_unique<NoOverlayDesktop>();
    chosen.panels = std::make_shared<NoPanelDesktop>();
    chosen.pointer = std::make_shared<NoPointerMonitor>();
    chosen.statusItem = statusItem(parts, std::make_unique<NoTrayIcon>());
    return chosen;
}

} // namespace

SessionOffer SessionOffer::open() {
    const X11Server server;
    return {.server = server,
            .x11 = server.connect(),
            .claim = std::make_shared<X11DisplayClaim>(server),
            .swaySocket = qEnvironmentVariable("SWAYSOCK")};
}

SessionKind SessionOffer::kind() const {
    if (!hasX11())
        return SessionKind::Unknown;
    return isBehindWayland(*x11) ? SessionKind::Wayland : SessionKind::X11;
}

QString SessionOffer::whyNoWindows() const {
    return hasX11() ? QString()
                    : QStringLiteral("Talvera needs an X server, and $DISPLAY names none that answers.");
}

void SessionOffer::prepareToolkit() const {
    if (!hasX11())
        return;
    // Also in a Wayland session, where the toolkit would choose otherwise: windows of the compositor's own
    // kind can't be put above others.
    qputenv("QT_QPA_PLATFORM", "xcb");
    prepareToolkitForX11();
}

SessionBackEnds chooseBackEnds(const SessionOffer& offer, const BackEndParts& parts) {
    switch (offer.kind()) {
    case SessionKind::X11:
        return x11BackEnds(offer, parts);
    case SessionKind::Wayland:
        return waylandBackEnds(offer, parts);
    case SessionKind::Unknown:
        return absentBackEnds(parts);
    }
    Q_UNREACHABLE();
}

} // namespace talvera
