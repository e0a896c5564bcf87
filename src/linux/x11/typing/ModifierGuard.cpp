// SPDX-License-Identifier: MIT
#include "linux/x11/typing/ModifierGuard.h"

namespace talvera {

std::uint8_t ModifierGuard::clear(std::optional<xcb_keycode_t> neutral) {
    // Pressed and let go alone, these open a menu or a launcher.
    constexpr std::uint8_t alt = XCB_MOD_MASK_1;
    constexpr std::uint8_t super = XCB_MOD_MASK_4;

    const X11KeyboardState state = m_keyboard.state();
    if (state.downKeys.any()) {
        if ((state.baseModifiers & (alt | super)) != 0 && neutral) {
            m_keyboard.press(*neutral);
            m_keyboard.release(*neutral);
        }
        // All of them, not only those that the server lists as modifiers: AltGr need not be listed, and a
        // letter that is held would go on repeating, or keep a grab in force that takes what we type.
        for (unsigned key = 0; key < state.downKeys.size(); ++key)
            if (state.downKeys[key])
                m_keyboard.release(static_cast<xcb_keycode_t>(key));
    }

    const auto locked = static_cast<std::uint8_t>(state.lockedModifiers & ~m_harmless);
    if (locked != 0 || state.latchedModifiers != 0) {
        if (locked != 0) {
            m_lifted |= locked;
            m_locked ^= locked; // a lock that shows up again is the user's own press, which toggles it
            m_ledger.noteLocks(m_lifted, m_locked);
        }
        m_keyboard.setLockedModifiers(locked, 0, state.latchedModifiers);
    }
    return state.group;
}

void ModifierGuard::restoreLocks() {
    if (m_lifted == 0)
        return;
    m_keyboard.setLockedModifiers(m_locked, m_locked);
    m_lifted = 0;
    m_locked = 0;
    m_ledger.noteLocks(0, 0);
    m_keyboard.connection().flush();
}

} // namespace talvera
