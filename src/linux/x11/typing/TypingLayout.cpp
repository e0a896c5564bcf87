// SPDX-License-Identifier: MIT
#include "linux/x11/typing/TypingLayout.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>

#include <algorithm>
#include <array>
#include <bit>

namespace talvera {

namespace {

constexpr std::size_t maxMasks = 16;
constexpr unsigned realModifiers = 8;

bool isOnKeypad(xkb_keysym_t symbol) {
    return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal;
}

bool isDead(xkb_keysym_t symbol) {
    return symbol >= XKB_KEY_dead_grave && symbol <= XKB_KEY_dead_greek;
}

/// One name for all the symbols that write the same character.
XKeysym canonical(xkb_keysym_t symbol) {
    const std::uint32_t character = isDead(symbol) ? 0 : xkb_keysym_to_utf32(symbol);
    return XKeysym{character >= U' ' && character != 0x7f ? xkb_utf32_to_keysym(character) : symbol};
}

xkb_keycode_t xkbCode(XKeycode key) {
    return static_cast<xkb_keycode_t>(key);
}

} // namespace

XKeysym symbolFor(char32_t character) {
    switch (character) {
    case U'\n':
        return XKeysym{XKB_KEY_Return};
    case U'\t':
        return XKeysym{XKB_KEY_Tab};
    default:
        return XKeysym{xkb_utf32_to_keysym(character)};
    }
}

XKeysym uncomposedSymbolFor(char32_t character) {
    constexpr std::uint32_t unicode = 0x01000000;
    // Not beyond ASCII: no method composes that, and terminals can't read all of it in this form.
    const bool isAscii = character >= U' ' && character < 0x7f;
    return isAscii ? XKeysym{unicode + character} : symbolFor(character);
}

TypingLayout::TypingLayout(X11Keyboard& keyboard)
    : m_keyboard(keyboard)
    , m_context(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES)) {
    refresh();
}

void TypingLayout::refresh(const TypingLedger::LentKeys& lent) {
    m_strokes.clear();
    m_lent = lent;
    m_keymap.reset(xkb_x11_keymap_new_from_device(m_context.get(), m_keyboard.connection().get(),
                                                  m_keyboard.typingDevice(), XKB_KEYMAP_COMPILE_NO_FLAGS));
    m_numLock = m_keymap ? numLockModifiersNow() : 0;
    m_modifierKeys = m_keymap ? modifierKeysNow() : XKeycodeBits();
}

std::optional<KeyStroke> TypingLayout::find(XKeysym symbol, unsigned group) {
    const Strokes& known = strokes(group);
    const auto stroke = known.find(symbol);
    return stroke != known.end() ? std::optional(stroke->second) : std::nullopt;
}

void TypingLayout::avoid(std::set<XKeycode> keys) {
    if (m_avoided == keys)
        return;
    m_avoided = std::move(keys);
    m_strokes.clear();
}

const TypingLayout::Strokes& TypingLayout::strokes(unsigned group) {
    const auto known = m_strokes.find(group);
    return known != m_strokes.end() ? known->second : m_strokes.emplace(group, collect(group)).first->second;
}

TypingLayout::Strokes TypingLayout::collect(unsigned group) const {
    Strokes found;
    if (!m_keymap)
        return found;
    const ModifierKeys modifierKeys = modifierKeysIn(group);
    for (const XKeycode key : keycodes()) {
        if (m_lent.contains(key) || m_avoided.contains(key))
            continue;
        for (const auto& [symbol, modifiers] : symbolsOf(key, group)) {
            const auto stroke = strokeWith(key, modifiers, modifierKeys);
            if (!stroke)
                continue;
            const auto [place, isNew] = found.emplace(symbol, *stroke);
            if (!isNew && stroke->modifiers.size() < place->second.modifiers.size())
                place->second = *stroke;
        }
    }
    return found;
}

std::vector<XKeycode> TypingLayout::keycodes() const {
    std::vector<XKeycode> keycodes;
    const xkb_keycode_t last =
        std::min<xkb_keycode_t>(xkb_keymap_max_keycode(m_keymap.get()), xKeycodeCount - 1);
    for (xkb_keycode_t code = xkb_keymap_min_keycode(m_keymap.get()); code <= last; ++code)
        keycodes.push_back(XKeycode(code));
    return keycodes;
}

/// What the key writes in this group, and with which modifiers. Keypads write the same as other keys do, but
/// not to every application.
std::vector<TypingLayout::SymbolOfKey> TypingLayout::symbolsOf(XKeycode key, unsigned group) const {
    auto* const keymap = m_keymap.get();
    const xkb_keycode_t code = xkbCode(key);
    const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap, code);
    if (groups == 0)
        return {};
    std::vector<SymbolOfKey> found;
    const xkb_layout_index_t layout = group % groups;
    const xkb_level_index_t levels = xkb_keymap_num_levels_for_key(keymap, code, layout);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
        const xkb_keysym_t* symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap, code, layout, level, &symbols);
        if (count != 1 || isOnKeypad(symbols[0]))
            continue;
        std::array<xkb_mod_mask_t, maxMasks> masks{};
        const std::size_t maskCount =
            xkb_keymap_key_get_mods_for_level(keymap, code, layout, level, masks.data(), masks.size());
        for (std::size_t index = 0; index < maskCount; ++index)
            found.push_back({canonical(symbols[0]), masks[index]});
    }
    return found;
}

/// Nothing when there is no key for one of the modifiers.
std::optional<KeyStroke> TypingLayout::strokeWith(XKeycode key, xkb_mod_mask_t modifiers,
                                                  const ModifierKeys& modifierKeys) {
    KeyStroke stroke{key, {}};
    for (; modifiers != 0; modifiers &= modifiers - 1) {
        const auto modifierKey = modifierKeys.find(modifiers & -modifiers);
        if (modifierKey == modifierKeys.end())
            return std::nullopt;
        stroke.modifiers.push_back(modifierKey->second);
    }
    return stroke;
}

TypingLayout::ModifierKeys TypingLayout::modifierKeysIn(unsigned group) const {
    ModifierKeys found;
    const auto keys = keycodes();
    const State rest = stateIn(group);
    for (const xkb_keysym_t wanted : {XKB_KEY_Shift_L, XKB_KEY_Shift_R, XKB_KEY_ISO_Level3_Shift,
                                      XKB_KEY_Mode_switch, XKB_KEY_ISO_Level5_Shift}) {
        for (const XKeycode key : keys) {
            if (xkb_state_key_get_one_sym(rest.get(), xkbCode(key)) != wanted)
                continue;
            // Which modifiers a key sets is told by pressing it; one that latches or locks is of no use.
            const State state = stateIn(group);
            xkb_state_update_key(state.get(), xkbCode(key), XKB_KEY_DOWN);
            const xkb_mod_mask_t pressed =
                xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_DEPRESSED) & ((1U << realModifiers) - 1);
            xkb_state_update_key(state.get(), xkbCode(key), XKB_KEY_UP);
            const xkb_mod_mask_t stuck = xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_EFFECTIVE);
            if (std::has_single_bit(pressed) && stuck == 0)
                found.emplace(pressed, key);
        }
    }
    return found;
}

/// The layout with no key held and no lock on.
TypingLayout::State TypingLayout::stateIn(unsigned group) const {
    State state(xkb_state_new(m_keymap.get()));
    xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, group);
    return state;
}

std::uint8_t TypingLayout::numLockModifiersNow() const {
    const State state = stateIn(0);
    for (const XKeycode key : keycodes()) {
        if (xkb_state_key_get_one_sym(state.get(), xkbCode(key)) != XKB_KEY_Num_Lock)
            continue;
        xkb_state_update_key(state.get(), xkbCode(key), XKB_KEY_DOWN);
        return static_cast<std::uint8_t>(xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_LOCKED));
    }
    return 0;
}

/// Without those that lock or latch: letting go of them would mean something.
XKeycodeBits TypingLayout::modifierKeysNow() const {
    XKeycodeBits found;
    State state = stateIn(0);
    for (const XKeycode key : keycodes()) {
        const auto pressed = xkb_state_update_key(state.get(), xkbCode(key), XKB_KEY_DOWN);
        const auto released = xkb_state_update_key(state.get(), xkbCode(key), XKB_KEY_UP);
        const bool isHeld = (pressed & released & XKB_STATE_MODS_DEPRESSED) != 0;
        const bool remains = ((pressed | released) & (XKB_STATE_MODS_LATCHED | XKB_STATE_MODS_LOCKED)) != 0;
        found[indexOf(key)] = isHeld && !remains;
        if (remains)
            state = stateIn(0);
    }
    return found;
}

} // namespace talvera
