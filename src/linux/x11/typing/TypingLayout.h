// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/typing/TypingLedger.h"

#include <xkbcommon/xkbcommon.h>

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

/// How a symbol is typed: hold the modifier keys, press the key.
struct KeyStroke {
    xcb_keycode_t key = 0;
    std::vector<xcb_keycode_t> modifiers;

    bool operator==(const KeyStroke&) const = default;
};

/// The symbol that stands for a character on keyboards; XKB_KEY_NoSymbol when there is none.
xkb_keysym_t symbolFor(char32_t character);

/// The same, but for ASCII a symbol that no layout has: input methods compose nothing of it, and applications
/// write the character all the same.
xkb_keysym_t uncomposedSymbolFor(char32_t character);

/// The user's own layout, asked for what it can type without help. Symbols that mean the same character are
/// one here, under the name that symbolFor() gives it.
class TypingLayout {
public:
    explicit TypingLayout(X11Keyboard& keyboard);

    /// Reads the layout anew, as if the keys of `lent` were not there.
    void refresh(const TypingLedger::LentKeys& lent = {});

    /// Leaves these keys out from now on: what is typed with them doesn't reach applications.
    void avoid(std::set<xcb_keycode_t> keys);

    /// How to type `symbol` in this group of the layout with Shift and AltGr at most.
    std::optional<KeyStroke> find(xkb_keysym_t symbol, unsigned group);

    /// The modifiers that Num Lock locks. They change nothing of what we type.
    std::uint8_t numLockModifiers() const { return m_numLock; }

private:
    using Strokes = std::map<xkb_keysym_t, KeyStroke>;

    const Strokes& strokes(unsigned group);
    Strokes collect(unsigned group) const;
    std::map<std::uint8_t, xcb_keycode_t> modifierKeys(unsigned group) const;
    std::uint8_t lockedBy(xkb_keysym_t symbol) const;

    struct Free {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };

    X11Keyboard& m_keyboard;
    std::unique_ptr<xkb_context, Free> m_context;
    std::unique_ptr<xkb_keymap, Free> m_keymap;
    TypingLedger::LentKeys m_lent;
    std::set<xcb_keycode_t> m_avoided;
    std::map<unsigned, Strokes> m_strokes; ///< by group, collected when first asked for
    std::uint8_t m_numLock = 0;
};

} // namespace talvera
