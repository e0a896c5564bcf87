// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/typing/TypingLedger.h"

#include <cstdint>

namespace talvera {

/// Slow Keys and Bounce Keys help hands that can't hold a key still. The server applies them to posted keys
/// as well, of which the first lets none through and the second no doubled letter. While this lives they
/// are off for the typing device; the user's own keys are filtered as ever.
class KeyFilterGuard {
public:
    KeyFilterGuard(X11Keyboard& keyboard, TypingLedger& ledger);
    KeyFilterGuard(const KeyFilterGuard&) = delete;
    KeyFilterGuard& operator=(const KeyFilterGuard&) = delete;
    ~KeyFilterGuard();

    /// Lifts them again if they have come back, as they do when the server gives all keyboards the settings
    /// of one of the user's. Costs nothing where none was on in the beginning.
    void renew();

private:
    X11Keyboard& m_keyboard;
    TypingLedger& m_ledger;
    std::uint32_t m_lifted;
};

} // namespace talvera
