// SPDX-License-Identifier: MIT
#include "linux/x11/windows/isBehindWayland.h"

#include "linux/x11/server/X11Connection.h"
#include "linux/x11/server/X11InputDevices.h"

#include <string_view>

#include <xcb/randr.h>

namespace talvera {

namespace {

using std::string_view_literals::operator""sv;

/// What newer ones say outright.
bool saysSo(X11Connection& connection) {
    constexpr auto name = "XWAYLAND"sv;
    const auto answer = connection.reply<xcb_query_extension_reply_t>(
        xcb_query_extension(connection.get(), name.size(), name.data()));
    return answer && answer->present != 0;
}

/// What older ones call their screens, whatever keyboards there are.
bool hasItsScreens(X11Connection& connection) {
    if (!connection.extension(xcb_randr_id))
        return false;
    connection.reply<xcb_randr_query_version_reply_t>(xcb_randr_query_version(connection.get(), 1, 5));
    const auto resources = connection.reply<xcb_randr_get_screen_resources_current_reply_t>(
        xcb_randr_get_screen_resources_current(connection.get(), connection.root()));
    if (!resources || resources->num_outputs == 0)
        return false;
    const auto* outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    const auto output = connection.reply<xcb_randr_get_output_info_reply_t>(
        xcb_randr_get_output_info(connection.get(), outputs[0], resources->config_timestamp));
    if (!output)
        return false;
    const std::string_view name(reinterpret_cast<const char*>(xcb_randr_get_output_info_name(output.get())),
                                output->name_len);
    return name.starts_with("XWAYLAND"sv);
}

bool hasItsKeyboards(X11Connection& connection) {
    X11InputDevices devices;
    devices.load(connection);
    return devices.isBehindWayland();
}

} // namespace

bool isBehindWayland(X11Connection& connection) {
    return !connection.isBroken() &&
           (saysSo(connection) || hasItsScreens(connection) || hasItsKeyboards(connection));
}

} // namespace talvera
