// SPDX-License-Identifier: MIT
#include "linux/x11/server/FocusedWindow.h"

#include <xcb/res.h>

namespace talvera {

bool windowExists(X11Connection& connection, xcb_window_t window) {
    return window > XCB_INPUT_FOCUS_POINTER_ROOT &&
           connection.reply<xcb_get_geometry_reply_t>(xcb_get_geometry(connection.get(), window)) != nullptr;
}

xcb_window_t focusedWindow(X11Connection& connection) {
    const auto active = connection.property(connection.root(), connection.atom("_NET_ACTIVE_WINDOW"));
    if (!active.empty() && windowExists(connection, active.front()))
        return active.front();
    // Without a window manager, or with a window that it doesn't manage, or that has just been closed.
    const auto focus = connection.reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection.get()));
    return focus && focus->focus != connection.root() && windowExists(connection, focus->focus) ? focus->focus
                                                                                                : XCB_NONE;
}

xcb_window_t clientOf(const X11Connection& connection, xcb_window_t window) {
    return window & ~connection.setup().resource_id_mask;
}

namespace {

/// The local processes of one client, or of all: without `resource`.
std::set<pid_t> localProcesses(X11Connection& connection, xcb_window_t resource) {
    if (!connection.extension(xcb_res_id))
        return {};
    const xcb_res_client_id_spec_t spec{resource, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto versionCookie = xcb_res_query_version(connection.get(), 1, 2);
    const auto idsCookie = xcb_res_query_client_ids(connection.get(), 1, &spec);
    const auto version = connection.reply<xcb_res_query_version_reply_t>(versionCookie);
    const auto answer = connection.reply<xcb_res_query_client_ids_reply_t>(idsCookie);
    std::set<pid_t> processes;
    if (!version || !answer)
        return processes;
    for (auto ids = xcb_res_query_client_ids_ids_iterator(answer.get()); ids.rem > 0;
         xcb_res_client_id_value_next(&ids)) {
        if (xcb_res_client_id_value_value_length(ids.data) > 0)
            processes.insert(static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data)));
    }
    return processes;
}

} // namespace

pid_t processOfWindow(X11Connection& connection, xcb_window_t window) {
    if (window == XCB_NONE)
        return 0;
    const auto processes = localProcesses(connection, window);
    return processes.empty() ? 0 : *processes.begin();
}

std::set<pid_t> processesOfClients(X11Connection& connection) {
    return localProcesses(connection, XCB_NONE);
}

} // namespace talvera
