// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/server/XKeysym.h"
#include "linux/x11/typing/X11Keyboard.h"

#include <cstdint>
#include <map>

namespace talvera {

class TargetBarrier;

/// What typing has changed for the time being and owes back to the user. It is kept at the X server, written
/// before each change, so that the companion or the next agent can undo it after a sudden death.
class TypingLedger {
public:
    using LentKeys = std::map<XKeycode, XKeysym>; ///< the symbol that each spare key has for now

    explicit TypingLedger(X11Keyboard& keyboard)
        : m_keyboard(keyboard) {}

    /// The lent keys from now on.
    void noteLentKeys(const LentKeys& keys);

    /// The modifiers whose locks are lifted from now on, and those that have to be locked in the end.
    void noteLocks(std::uint8_t lifted, std::uint8_t locked);

    /// The filters that are switched off for the typing device from now on, as a set of XKB controls.
    void noteFilters(std::uint32_t lifted);

    /// Pays back what a ledger at the server still owes, and releases keys that were left down. With
    /// `barrier`, the focused application first gets the time to read the keys that were typed last.
    static void settle(X11Keyboard& keyboard, TargetBarrier* barrier = nullptr);

private:
    void write();

    X11Keyboard& m_keyboard;
    LentKeys m_keys;
    std::uint8_t m_lifted = 0;
    std::uint8_t m_locked = 0;
    std::uint32_t m_filters = 0;
    bool m_written = false;
};

/// Makes the keys empty again that still have the symbol that they were lent for.
void returnLentKeys(X11Keyboard& keyboard, const TypingLedger::LentKeys& keys);

} // namespace talvera
