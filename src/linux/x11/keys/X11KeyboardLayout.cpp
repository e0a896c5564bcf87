// SPDX-License-Identifier: MIT
#include "linux/x11/keys/X11KeyboardLayout.h"

#include "linux/x11/keys/X11KeyCodes.h"

#include <array>

#include <xkbcommon/xkbcommon-x11.h>

namespace talvera {

namespace {

template <typename T, void (*Unref)(T*)>
struct Unreferencing {
    void operator()(T* object) const { Unref(object); }
};
using Keymap = std::unique_ptr<xkb_keymap, Unreferencing<xkb_keymap, xkb_keymap_unref>>;
using State = std::unique_ptr<xkb_state, Unreferencing<xkb_state, xkb_state_unref>>;

/// A state of `keymap` in which no key is held, in the group that is in use now.
State atRest(const Keymap& keymap, xcb_connection_t* connection, std::int32_t device) {
    const State now(xkb_x11_state_new_from_device(keymap.get(), connection, device));
    State rest(xkb_state_new(keymap.get()));
    if (!now || !rest)
        return nullptr;
    const auto numLock = xkb_keymap_mod_get_index(keymap.get(), "NumLock");
    const auto locked = numLock == XKB_MOD_INVALID ? 0 : xkb_mod_mask_t(1) << numLock;
    const auto group = xkb_state_serialize_layout(now.get(), XKB_STATE_LAYOUT_EFFECTIVE);
    xkb_state_update_mask(rest.get(), 0, 0, locked, 0, 0, group);
    return rest;
}

QString textOf(const State& state, XKeycode keycode) {
    std::array<char, 64> text{};
    const auto size =
        xkb_state_key_get_utf8(state.get(), static_cast<xkb_keycode_t>(keycode), text.data(), text.size());
    return size > 0 && static_cast<std::size_t>(size) < text.size() ? QString::fromUtf8(text.data(), size)
                                                                    : QString();
}

} // namespace

X11KeyboardLayout::X11KeyboardLayout(const X11Server& server)
    : m_connection(server.connect())
    , m_context(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref) {
    if (!m_connection->isBroken())
        xkb_x11_setup_xkb_extension(m_connection->get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                    XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                    nullptr, nullptr, nullptr, nullptr);
}

X11KeyboardLayout::~X11KeyboardLayout() = default;

std::optional<QString> X11KeyboardLayout::character(VirtualKey key) {
    const auto keycodes = X11KeyCodes::fromVirtual(key);
    // xkbcommon waits for its answers without a bound, so the server has to show first that it gives any.
    if (keycodes.empty() || !m_context || !m_connection->roundTrip())
        return std::nullopt;
    auto* connection = m_connection->get();
    const auto device = xkb_x11_get_core_keyboard_device_id(connection);
    if (device < 0)
        return std::nullopt;
    const Keymap keymap(
        xkb_x11_keymap_new_from_device(m_context.get(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    const auto state = keymap ? atRest(keymap, connection, device) : nullptr;
    if (!state)
        return std::nullopt;
    const auto text = textOf(state, keycodes.front());
    // Keys such as Escape write a control character, which is nothing to show.
    if (text.isEmpty() || !text.front().isPrint())
        return std::nullopt;
    return text;
}

} // namespace talvera
