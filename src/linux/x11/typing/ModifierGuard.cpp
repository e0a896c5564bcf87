// SPDX-License-Identifier: MIT
#include "linux/x11/typing/ModifierGuard.h"

namespace talvera {

namespace {

constexpr std::uint8_t alt = XCB_MOD_MASK_1;
constexpr std::uint8_t super = XCB_MOD_MASK_4;

/// Held, these make a chord of the next key. Caps Lock is among them since its lock is the user's own as long
/// as the key is down.
constexpr std::uint8_t chordModifiers = XCB_MOD_MASK_CONTROL | alt | super | XCB_MOD_MASK_LOCK;

} // namespace

ModifierGuard::Look ModifierGuard::look() {
    const X11KeyboardState state = m_keyboard.state();
    if ((state.baseModifiers & chordModifiers) != 0)
        m_chordKeys |= state.downKeys;
    m_chordKeys &= state.downKeys;
    if (m_chordKeys.any())
        return {state.group, true};
    // Shift and AltGr, which the layout's characters are made with. They need not be listed as modifiers.
    if ((state.baseModifiers & ~m_harmless) != 0)
        m_keyboard.releaseAll(state.downKeys);
    liftLocks(state);
    return {state.group, false};
}

void ModifierGuard::letGo(std::optional<XKeycode> neutral) {
    const X11KeyboardState state = m_keyboard.state();
    // Pressed and let go alone, these open a menu or a launcher.
    if ((state.baseModifiers & (alt | super)) != 0 && neutral) {
        m_keyboard.press(*neutral);
        m_keyboard.release(*neutral);
    }
    // Not only modifiers: a letter that is held would go on repeating, or keep a grab in force that takes
    // what we type.
    m_keyboard.releaseAll(state.downKeys);
    liftLocks(state);
    m_chordKeys.reset();
}

void ModifierGuard::liftLocks(const X11KeyboardState& state) {
    const auto locked = static_cast<std::uint8_t>(state.lockedModifiers & ~m_harmless);
    if (locked == 0 && state.latchedModifiers == 0)
        return;
    if (locked != 0) {
        m_lifted |= locked;
        m_locked ^= locked; // a lock that shows up again is the user's own press, which toggles it
        m_ledger.noteLocks(m_lifted, m_locked);
    }
    m_keyboard.setLockedModifiers(locked, 0, state.latchedModifiers);
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
