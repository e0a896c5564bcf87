// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyPresence.h"

#include "linux/keyboard/EvdevKeys.h"
#include "linux/keyboard/KernelDevice.h"

#include <xcb/xinput.h>

namespace talvera {

namespace {

/// The device's node in the file system, as its driver tells it; empty when it tells none.
std::string nodeOf(std::uint16_t device, X11Connection& connection) {
    constexpr std::uint32_t longestNode = 64; // in units of four bytes
    const auto property = connection.reply<xcb_input_xi_get_property_reply_t>(
        xcb_input_xi_get_property(connection.get(), device, 0, connection.atom("Device Node"),
                                  XCB_GET_PROPERTY_TYPE_ANY, 0, longestNode));
    if (!property || property->format != 8)
        return {};
    const auto* bytes = static_cast<const char*>(xcb_input_xi_get_property_items(property.get()));
    const std::string text(bytes, property->num_items);
    return text.substr(0, text.find('\0'));
}

} // namespace

bool mayHaveKey(VirtualKey key, X11Connection& connection, const X11InputDevices& devices,
                const std::string& sysfs) {
    const auto codes = EvdevKeys::fromVirtual(key);
    bool isLacking = false;
    for (const auto& device : devices.all()) {
        if (device.use != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD || device.isPosted)
            continue;
        const auto node = nodeOf(device.id, connection);
        if (node.empty() || kernelDeviceHasAnyOf(codes, node, sysfs).value_or(true))
            return true;
        isLacking = true;
    }
    return !isLacking;
}

} // namespace talvera
