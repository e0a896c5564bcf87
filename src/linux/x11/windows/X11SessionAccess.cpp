// SPDX-License-Identifier: MIT
#include "linux/x11/windows/X11SessionAccess.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/windows/isBehindWayland.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace talvera {

namespace {

bool announcesKeys(X11Connection& connection) {
    if (!connection.extension(xcb_input_id))
        return false;
    const auto version = connection.reply<xcb_input_xi_query_version_reply_t>(
        xcb_input_xi_query_version(connection.get(), 2, 1));
    return version && version->major_version >= 2;
}

} // namespace

X11SessionAccess::X11SessionAccess(X11Connection& connection)
    : m_connection(connection)
    , m_windows(connection) {
    m_isBehindWayland = isBehindWayland(connection);
    m_canWatchKeys = announcesKeys(connection);
    m_canPostKeys = connection.extension(xcb_test_id) != nullptr;
}

std::vector<SessionLack> X11SessionAccess::lacks() {
    if (m_connection.isBroken() || m_isBehindWayland)
        return {SessionLack::KnownSession};
    std::vector<SessionLack> lacks;
    if (!m_canWatchKeys)
        lacks.push_back(SessionLack::KeyWatching);
    if (!m_canPostKeys)
        lacks.push_back(SessionLack::KeyPosting);
    if (!m_windows.canActivate())
        lacks.push_back(SessionLack::ActiveWindow);
    return lacks;
}

} // namespace talvera
