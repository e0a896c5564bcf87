// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/typing/TypingLedger.h"

#include <cstdint>
#include <optional>

namespace talvera {

/// Keeps what the user holds or has locked out of what we type. Locks come back in the end; held keys count
/// as let go until the user presses them anew, since nobody could release a key that we pressed again.
class ModifierGuard {
public:
    /// Locks of `harmless` modifiers are left alone.
    ModifierGuard(X11Keyboard& keyboard, TypingLedger& ledger, std::uint8_t harmless)
        : m_keyboard(keyboard)
        , m_ledger(ledger)
        , m_harmless(harmless) {}
    ModifierGuard(const ModifierGuard&) = delete;
    ModifierGuard& operator=(const ModifierGuard&) = delete;
    ~ModifierGuard() { restoreLocks(); }

    /// Makes sure that the next key is pressed alone. To be called before each key, as the user may have
    /// pressed something since the last one. Returns the group of the layout that is in use. `neutral` is a
    /// key that writes nothing.
    std::uint8_t clear(std::optional<xcb_keycode_t> neutral);

    /// Puts the locks back that have been lifted.
    void restoreLocks();

private:
    X11Keyboard& m_keyboard;
    TypingLedger& m_ledger;
    std::uint8_t m_harmless;
    std::uint8_t m_lifted = 0;
    std::uint8_t m_locked = 0; ///< of the lifted ones, those that have to be locked in the end
};

} // namespace talvera
