// SPDX-License-Identifier: MIT
#include "linux/x11/server/X11InputDevices.h"

#include <string_view>
#include <vector>

#include <xcb/xinput.h>

namespace talvera {

void X11InputDevices::load(X11Connection& connection) {
    const auto devices = connection.reply<xcb_input_xi_query_device_reply_t>(
        xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL));
    if (!devices)
        return; // the server is gone; what we know stays
    const auto postedMark = connection.atom("XTEST Device");

    m_present.clear();
    m_posted.clear();
    m_isBehindWayland = false;
    std::vector<std::pair<std::uint16_t, xcb_input_xi_get_property_cookie_t>> marks;
    for (auto each = xcb_input_xi_query_device_infos_iterator(devices.get()); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const auto& device = *each.data;
        if (!device.enabled || device.type == XCB_INPUT_DEVICE_TYPE_FLOATING_SLAVE)
            continue;
        m_present.insert(device.deviceid);
        const std::string_view name(xcb_input_xi_device_info_name(each.data), device.name_len);
        m_isBehindWayland = m_isBehindWayland || name.starts_with("xwayland-");
        marks.emplace_back(device.deviceid,
                           xcb_input_xi_get_property(connection.get(), device.deviceid, 0, postedMark,
                                                     XCB_GET_PROPERTY_TYPE_ANY, 0, 1));
    }
    for (const auto& [device, cookie] : marks) {
        const auto mark = connection.reply<xcb_input_xi_get_property_reply_t>(cookie);
        if (mark && mark->num_items > 0)
            m_posted.insert(device);
    }
}

} // namespace talvera
