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
    XKeycode key{};
    std::vector<XKeycode> modifiers;

    bool operator==(const KeyStroke&) const = default;
};

/// The symbol that stands for a character on keyboards; noKeysym when there is none.
XKeysym symbolFor(char32_t character);

/// The same, but for ASCII a symbol that no layout has: input methods compose nothing of it, and applications
/// write the character all the same.
XKeysym uncomposedSymbolFor(char32_t character);

/// The user's own layout, asked for what it can type without help. Symbols that mean the same character are
/// one here, under the name that symbolFor() gives it.
class TypingLayout {
public:
    explicit TypingLayout(X11Keyboard& keyboard);

    /// Reads the layout anew, as if the keys of `lent` were not there.
    void refresh(const TypingLedger::LentKeys& lent = {});

    /// Leaves these keys out from now on: what is typed with them doesn't reach applications.
    void avoid(std::set<XKeycode> keys);

    /// How to type `symbol` in this group of the layout with Shift and AltGr at most.
    std::optional<KeyStroke> find(XKeysym symbol, unsigned group);

    /// The keys that hold a modifier while they are down.
    const XKeycodeBits& modifierKeys() const { return m_modifierKeys; }

    /// The modifiers that Num Lock locks. They change nothing of what we type.
    std::uint8_t numLockModifiers() const { return m_numLock; }

private:
    struct Free {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };
    using State = std::unique_ptr<xkb_state, Free>;
    using Strokes = std::map<XKeysym, KeyStroke>;
    using ModifierKeys = std::map<xkb_mod_mask_t, XKeycode>; ///< by the one modifier that each sets

    struct SymbolOfKey {
        XKeysym symbol;
        xkb_mod_mask_t modifiers;
    };

    const Strokes& strokes(unsigned group);
    Strokes collect(unsigned group) const;
    std::vector<XKeycode> keycodes() const;
    std::vector<SymbolOfKey> symbolsOf(XKeycode key, unsigned group) const;
    static std::optional<KeyStroke> strokeWith(XKeycode key, xkb_mod_mask_t modifiers,
                                               const ModifierKeys& modifierKeys);
    ModifierKeys modifierKeysIn(unsigned group) const;
    State stateIn(unsigned group) const;
    std::uint8_t numLockModifiersNow() const;
    XKeycodeBits modifierKeysNow() const;

    X11Keyboard& m_keyboard;
    std::unique_ptr<xkb_context, Free> m_context;
    std::unique_ptr<xkb_keymap, Free> m_keymap;
    TypingLedger::LentKeys m_lent;
    std::set<XKeycode> m_avoided;
    std::map<unsigned, Strokes> m_strokes; ///< by group, collected when first asked for
    std::uint8_t m_numLock = 0;
    XKeycodeBits m_modifierKeys;
};

} // namespace talvera
