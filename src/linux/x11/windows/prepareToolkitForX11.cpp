// SPDX-License-Identifier: MIT
#include "linux/x11/windows/prepareToolkitForX11.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/XcbXkb.h"

#include <QByteArray>
#include <QGuiApplication>

namespace talvera {

namespace {

/// The server makes up a release before each repeat of a held key. The toolkit knows those by the press
/// that it finds behind them; on a busy machine that one isn't read yet, and one repeat in eight looked as
/// if the user had let go.
void repeatWithoutReleases() {
    const auto* const toolkit = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!toolkit)
        return;
    auto* const connection = toolkit->connection();
    const auto* const keyboards = xcb_get_extension_data(connection, &xcb_xkb_id);
    if (!keyboards || !keyboards->present)
        return;
    constexpr std::uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto question =
        xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0);
    const XcbPtr<xcb_xkb_per_client_flags_reply_t> workedOff(
        xcb_xkb_per_client_flags_reply(connection, question, nullptr));
}

} // namespace

void prepareToolkitForX11() {
    // Windows are drawn in software: the libraries for the other way would only be memory.
    if (!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"))
        qputenv("QT_XCB_GL_INTEGRATION", "none");
    qAddPreRoutine(repeatWithoutReleases);
}

} // namespace talvera
