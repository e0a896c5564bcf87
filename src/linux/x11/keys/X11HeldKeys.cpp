// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11HeldKeys.h"

#include "linux/x11/keys/X11KeyCodes.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <array>
#include <vector>

namespace talvera {

namespace {

/// These count by their place, also where the layout gives them another meaning: Right Alt is no modifier at
/// all in the maps of layouts that make it AltGr. As Compose a key is none of them any more.
constexpr std::array keysByPlace = {VirtualKey::RightCommand, VirtualKey::RightOption, VirtualKey::Fn};

bool isModifierByPlace(VirtualKey key) {
    return std::ranges::count(keysByPlace, key) > 0;
}

} // namespace

void X11HeldKeys::loadModifiers(X11Connection& connection) {
    m_flagOf.fill(0);
    m_isLock.reset();
    const auto map =
        connection.reply<xcb_get_modifier_mapping_reply_t>(xcb_get_modifier_mapping(connection.get()));
    if (map) {
        const auto* keycodes = xcb_get_modifier_mapping_keycodes(map.get());
        for (int i = 0; i < xcb_get_modifier_mapping_keycodes_length(map.get()); ++i) {
            const auto modifier = static_cast<std::uint16_t>(1 << (i / map->keycodes_per_modifier));
            const auto flags = X11KeyCodes::flagsFromState(modifier);
            m_flagOf[keycodes[i]] |= flags & ~KeyFlag::CapsLock;
            if (flags & KeyFlag::CapsLock)
                m_isLock.set(keycodes[i]);
        }
    }
    m_flagOf[0] = 0; // stands for no key in the map
    loadCompose(connection);
    for (std::size_t index = 0; index < m_flagOf.size(); ++index) {
        const auto keycode = XKeycode(index);
        const auto key = X11KeyCodes::toVirtual(keycode);
        if (key && isModifierByPlace(*key) && keycode != X11KeyCodes::rightControl && !isCompose(keycode))
            m_flagOf[index] |= flagOfModifierKey(*key);
    }
}

void X11HeldKeys::loadCompose(X11Connection& connection) {
    m_isCompose.reset();
    std::vector<std::pair<XKeycode, xcb_get_keyboard_mapping_cookie_t>> questions;
    for (const auto key : keysByPlace) {
        for (const auto keycode : X11KeyCodes::fromVirtual(key)) {
            const auto code = static_cast<xcb_keycode_t>(keycode);
            questions.emplace_back(keycode, xcb_get_keyboard_mapping(connection.get(), code, 1));
        }
    }
    for (const auto& [keycode, question] : questions) {
        const auto map = connection.reply<xcb_get_keyboard_mapping_reply_t>(question);
        // What it is with another modifier doesn't matter.
        if (map && map->keysyms_per_keycode > 0)
            m_isCompose[indexOf(keycode)] =
                xcb_get_keyboard_mapping_keysyms(map.get())[0] == XKB_KEY_Multi_key;
    }
}

bool X11HeldKeys::isModifier(XKeycode keycode) const {
    return m_flagOf[indexOf(keycode)] != 0;
}

void X11HeldKeys::keepKeys(const XKeycodeBits& keys) {
    std::erase_if(m_held, [&keys](const auto& held) { return !keys[indexOf(held.first)]; });
}

bool X11HeldKeys::isHeld(XKeycode keycode) const {
    const auto first = m_held.lower_bound({keycode, 0});
    return first != m_held.end() && first->first == keycode;
}

std::uint64_t X11HeldKeys::flags(VirtualKey about) const {
    std::uint64_t flags = 0;
    for (const auto& [keycode, device] : m_held) {
        const bool isCommand =
            about == VirtualKey::RightCommand && keycode == X11KeyCodes::rightControl && !isCompose(keycode);
        flags |= isCommand ? KeyFlag::Command : m_flagOf[indexOf(keycode)];
    }
    return flags;
}

} // namespace talvera
