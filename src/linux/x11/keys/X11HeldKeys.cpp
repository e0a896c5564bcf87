// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11HeldKeys.h"

#include "linux/x11/keys/X11KeyCodes.h"
#include "platform/keyboard/EventTap.h"
#include "platform/keyboard/VirtualKeys.h"

namespace talvera {

namespace {
constexpr std::uint16_t rightCommand = 54;
}

void X11HeldKeys::loadModifiers(X11Connection& connection) {
    m_flagOf.fill(0);
    const auto map =
        connection.reply<xcb_get_modifier_mapping_reply_t>(xcb_get_modifier_mapping(connection.get()));
    if (map) {
        const auto* keycodes = xcb_get_modifier_mapping_keycodes(map.get());
        for (int i = 0; i < xcb_get_modifier_mapping_keycodes_length(map.get()); ++i) {
            const auto modifier = static_cast<std::uint16_t>(1 << (i / map->keycodes_per_modifier));
            m_flagOf[keycodes[i]] |= X11KeyCodes::flagsFromState(modifier) & ~KeyFlag::CapsLock;
        }
    }
    m_flagOf[0] = 0; // stands for no key in the map
    for (std::size_t keycode = 0; keycode < m_flagOf.size(); ++keycode) {
        // The keys that can be hotkeys alone count by their place, also where the layout gives them another
        // meaning: Right Alt is no modifier at all in the maps of layouts that make it AltGr.
        const auto key = X11KeyCodes::toVirtual(static_cast<std::uint8_t>(keycode));
        if ((key == 54 && keycode != X11KeyCodes::rightControl) || key == 61 || key == 63)
            m_flagOf[keycode] |= flagOfModifierKey(*key);
    }
}

bool X11HeldKeys::isModifier(std::uint8_t keycode) const {
    return m_flagOf[keycode] != 0;
}

void X11HeldKeys::keepDevices(const std::set<std::uint16_t>& devices) {
    std::erase_if(m_held, [&](const auto& held) { return !devices.contains(held.second); });
}

bool X11HeldKeys::isHeld(std::uint8_t keycode) const {
    const auto first = m_held.lower_bound({keycode, 0});
    return first != m_held.end() && first->first == keycode;
}

std::uint64_t X11HeldKeys::flags(std::uint16_t about) const {
    std::uint64_t flags = 0;
    for (const auto& [keycode, device] : m_held) {
        const bool isCommand = about == rightCommand && keycode == X11KeyCodes::rightControl;
        flags |= isCommand ? KeyFlag::Command : m_flagOf[keycode];
    }
    return flags;
}

} // namespace talvera
