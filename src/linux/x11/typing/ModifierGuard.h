// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/typing/TypingLedger.h"

#include <cstdint>
#include <optional>

namespace talvera {

/// Keeps the user's keys and our own apart. What is down when typing begins, such as the rest of a hotkey, is
/// let go: it counts as released until the user presses it anew, since the user's own release would come
/// before ours. What the user presses later is theirs: a chord is theirs until its last key is up, and no key
/// of ours may come in between. Locks are lifted, and come back in the end.
class ModifierGuard {
public:
    /// What is to be known of the keyboard before a key is pressed.
    struct Look {
        std::uint8_t group = 0;     ///< the layout in use
        bool isInUseByUser = false; ///< a chord is down: a key of ours would be taken for a part of it
    };

    /// Locks of `harmless` modifiers are left alone.
    ModifierGuard(X11Keyboard& keyboard, TypingLedger& ledger, std::uint8_t harmless)
        : m_keyboard(keyboard)
        , m_ledger(ledger)
        , m_harmless(harmless) {}
    ModifierGuard(const ModifierGuard&) = delete;
    ModifierGuard& operator=(const ModifierGuard&) = delete;
    ~ModifierGuard() { restoreLocks(); }

    /// To be called before each key, as the user may have pressed something since the last one, and while
    /// none of ours is down. Unless the user has a chord down, the next key then comes alone.
    Look look();

    /// Lets go of all keys that are down. `neutral` is a key that writes nothing.
    void letGo(std::optional<XKeycode> neutral);

    /// Puts the locks back that have been lifted.
    void restoreLocks();

private:
    void liftLocks(const X11KeyboardState& state);

    X11Keyboard& m_keyboard;
    TypingLedger& m_ledger;
    std::uint8_t m_harmless;
    std::uint8_t m_lifted = 0;
    std::uint8_t m_locked = 0; ///< of the lifted ones, those that have to be locked in the end
    XKeycodeBits m_chordKeys;  ///< the keys that were down together with a modifier
};

} // namespace talvera
