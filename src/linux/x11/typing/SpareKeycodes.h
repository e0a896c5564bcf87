// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/typing/TypingLedger.h"

#include <cstddef>
#include <optional>
#include <set>
#include <vector>

namespace talvera {

/// The keycodes that write nothing on any of the user's keyboards. They can be lent for characters that the
/// layout lacks, and are given back empty.
class SpareKeycodes {
public:
    SpareKeycodes(X11Keyboard& keyboard, TypingLedger& ledger);
    SpareKeycodes(const SpareKeycodes&) = delete;
    SpareKeycodes& operator=(const SpareKeycodes&) = delete;

    /// Looks again at what the keyboards have, after the user's layout has changed. Keys that lost their
    /// symbol in that are no longer lent.
    void refresh();

    /// How many symbols can be had at once.
    std::size_t capacity() const { return m_pool.size(); }

    /// A key that writes nothing and is never lent; none when all keys are taken.
    std::optional<XKeycode> neutralKey() const { return m_neutral; }

    /// The key that has been lent for `symbol`.
    std::optional<XKeycode> find(XKeysym symbol) const;

    /// Makes the first capacity() of `symbols` writable, in one change of the keymap. Symbols that were lent
    /// before stay if they are among them, or if their keys are not needed.
    void lend(const std::vector<XKeysym>& symbols);

    const TypingLedger::LentKeys& lent() const { return m_lent; }
    void giveBack();

private:
    std::vector<XKeycode> keysFor(std::set<XKeysym>& symbols) const;
    void change(const TypingLedger::LentKeys& changes);

    X11Keyboard& m_keyboard;
    TypingLedger& m_ledger;
    std::vector<XKeycode> m_pool;
    std::optional<XKeycode> m_neutral;
    TypingLedger::LentKeys m_lent;
};

} // namespace talvera
