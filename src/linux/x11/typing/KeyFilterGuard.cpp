// SPDX-License-Identifier: MIT
#include "linux/x11/typing/KeyFilterGuard.h"

namespace talvera {

KeyFilterGuard::KeyFilterGuard(X11Keyboard& keyboard, TypingLedger& ledger)
    : m_keyboard(keyboard)
    , m_ledger(ledger)
    , m_lifted(keyboard.typingFilters()) {
    if (m_lifted == 0)
        return;
    m_ledger.noteFilters(m_lifted);
    m_keyboard.liftTypingFilters(m_lifted);
}

void KeyFilterGuard::renew() {
    if (m_lifted == 0)
        return;
    if (const std::uint32_t back = m_keyboard.typingFilters() & m_lifted)
        m_keyboard.liftTypingFilters(back);
}

KeyFilterGuard::~KeyFilterGuard() {
    if (m_lifted == 0)
        return;
    m_keyboard.restoreTypingFilters(m_lifted);
    m_ledger.noteFilters(0);
    m_keyboard.connection().flush();
}

} // namespace talvera
