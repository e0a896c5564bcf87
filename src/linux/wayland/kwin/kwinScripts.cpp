// SPDX-License-Identifier: MIT
#include "linux/wayland/kwin/kwinScripts.h"

namespace talvera::KwinScripts {

QByteArray tellOfWindows(const QString& connection, const QString& path, const QString& interface) {
    const auto script = QStringLiteral(R"js(
function tell(what, window) {
    const w = window || {internalId: "", pid: 0, desktopFileName: "", resourceClass: "", resourceName: ""};
    callDBus("%1", "%2", "%3", what, String(w.internalId), String(w.pid), String(w.desktopFileName),
             String(w.resourceClass), String(w.resourceName));
}
const windows = workspace.windowList ? workspace.windowList() : workspace.clientList();
for (const window of windows)
    tell("Window", window);
(workspace.windowActivated || workspace.clientActivated).connect(window => tell("Active", window));
tell("Active", workspace.activeWindow === undefined ? workspace.activeClient : workspace.activeWindow);
)js");
    return script.arg(connection, path, interface).toUtf8();
}

QByteArray activateWindow(const QString& connection, const QString& path, const QString& interface,
                          const QString& id) {
    const auto script = QStringLiteral(R"js(
for (const window of workspace.windowList ? workspace.windowList() : workspace.clientList()) {
    if (String(window.internalId) === "%4")
        workspace[workspace.activeWindow === undefined ? "activeClient" : "activeWindow"] = window;
}
callDBus("%1", "%2", "%3", "Activated", "%4");
)js");
    return script.arg(connection, path, interface, id).toUtf8();
}

} // namespace talvera::KwinScripts
