// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11SessionAccess.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/X11InputDevices.h"

#include <xcb/xinput.h>

#include <string_view>

namespace talvera {

namespace {

bool hasExtension(X11Connection& connection, std::string_view name) {
    const auto answer = connection.reply<xcb_query_extension_reply_t>(
        xcb_query_extension(connection.get(), std::uint16_t(name.size()), name.data()));
    return answer && answer->present;
}

bool announcesKeys(X11Connection& connection) {
    if (!hasExtension(connection, "XInputExtension"))
        return false;
    const auto version = connection.reply<xcb_input_xi_query_version_reply_t>(
        xcb_input_xi_query_version(connection.get(), 2, 1));
    return version && version->major_version >= 2;
}

} // namespace

X11SessionAccess::X11SessionAccess(X11Connection* connection)
    : m_connection(connection) {
    if (!connection)
        return;
    m_windows.emplace(*connection);
    X11InputDevices devices;
    devices.load(*connection);
    m_isBehindWayland = devices.isBehindWayland();
    m_canWatchKeys = announcesKeys(*connection);
    m_canPostKeys = hasExtension(*connection, "XTEST");
}

std::vector<SessionLack> X11SessionAccess::lacks() {
    if (!m_connection || m_connection->isBroken() || m_isBehindWayland)
        return {SessionLack::XServer};
    std::vector<SessionLack> lacks;
    if (!m_canWatchKeys)
        lacks.push_back(SessionLack::KeyWatching);
    if (!m_canPostKeys)
        lacks.push_back(SessionLack::KeyPosting);
    if (!m_windows->canActivate())
        lacks.push_back(SessionLack::ActiveWindow);
    return lacks;
}

} // namespace talvera
