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

} // namespace talvera::KwinScripts
