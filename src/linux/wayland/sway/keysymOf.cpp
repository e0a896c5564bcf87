// SPDX-License-Identifier: MIT
#include "linux/wayland/sway/keysymOf.h"

#include "linux/wayland/sway/swayBindings.h"
#include "platform/keyboard/KeyboardLayout.h"

#include <QList>

#include <memory>

namespace talvera {

namespace {

xkb_keysym_t onTheUsLayout(int keycode) {
    const std::unique_ptr<xkb_context, void (*)(xkb_context*)> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                                                       xkb_context_unref);
    const xkb_rule_names names{
        .rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
    const std::unique_ptr<xkb_keymap, void (*)(xkb_keymap*)> keymap(
        context ? xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS) : nullptr,
        xkb_keymap_unref);
    const xkb_keysym_t* symbols = nullptr;
    const int count = keymap ? xkb_keymap_key_get_syms_by_level(
                                   keymap.get(), static_cast<xkb_keycode_t>(keycode), 0, 0, &symbols)
                             : 0;
    return count > 0 ? symbols[0] : XKB_KEY_NoSymbol;
}

} // namespace

xkb_keysym_t keysymOf(VirtualKey key, KeyboardLayout& layout) {
    if (const auto written = layout.character(key); written && !written->isEmpty())
        return xkb_keysym_to_lower(xkb_utf32_to_keysym(written->toUcs4().constFirst()));
    const auto keycodes = keycodesOf(key);
    return keycodes.empty() ? XKB_KEY_NoSymbol : xkb_keysym_to_lower(onTheUsLayout(keycodes.front()));
}

} // namespace talvera
