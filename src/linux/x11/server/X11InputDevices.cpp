// SPDX-License-Identifier: MIT
#include "linux/x11/server/X11InputDevices.h"

#include <algorithm>
#include <string_view>

#include <xcb/xinput.h>

namespace talvera {

void X11InputDevices::load(X11Connection& connection) {
    const auto devices = connection.reply<xcb_input_xi_query_device_reply_t>(
        xcb_input_xi_query_device(connection.get(), XCB_INPUT_DEVICE_ALL));
    if (!devices)
        return;
    const auto postedMark = connection.atom("XTEST Device");

    m_all.clear();
    m_present.clear();
    m_posted.clear();
    m_isBehindWayland = false;
    std::vector<xcb_input_xi_get_property_cookie_t> marks;
    for (auto each = xcb_input_xi_query_device_infos_iterator(devices.get()); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const auto& device = *each.data;
        if (!device.enabled || device.type == XCB_INPUT_DEVICE_TYPE_FLOATING_SLAVE)
            continue;
        m_all.push_back({device.deviceid, device.type, device.attachment, false});
        m_present.insert(device.deviceid);
        const std::string_view name(xcb_input_xi_device_info_name(each.data), device.name_len);
        m_isBehindWayland = m_isBehindWayland || name.starts_with("xwayland-");
        marks.push_back(xcb_input_xi_get_property(connection.get(), device.deviceid, 0, postedMark,
                                                  XCB_GET_PROPERTY_TYPE_ANY, 0, 1));
    }
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const auto mark = connection.reply<xcb_input_xi_get_property_reply_t>(marks[i]);
        m_all[i].isPosted = mark && mark->num_items > 0;
        if (m_all[i].isPosted)
            m_posted.insert(m_all[i].id);
    }
}

std::optional<std::uint16_t> X11InputDevices::postingKeyboard(std::uint16_t master) const {
    const auto found = std::ranges::find_if(m_all, [master](const X11InputDevice& device) {
        return device.isPosted && device.use == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD &&
               device.attachment == master;
    });
    return found == m_all.end() ? std::nullopt : std::optional(found->id);
}

} // namespace talvera
