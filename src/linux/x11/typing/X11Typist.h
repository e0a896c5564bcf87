// SPDX-License-Identifier: MIT
#pragma once

#include "linux/x11/typing/InputMethod.h"
#include "linux/x11/typing/KeyFilterGuard.h"
#include "linux/x11/typing/KeyboardFocus.h"
#include "linux/x11/typing/ModifierGuard.h"
#include "linux/x11/typing/SpareKeycodes.h"
#include "linux/x11/typing/TargetBarrier.h"
#include "linux/x11/typing/TypingLayout.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace talvera {

/// Types one sequence of symbols that is known beforehand, whatever the layout, and whatever the user holds.
/// Symbols that the layout lacks are put on spare keys, as many at a time as there are. Destroying it leaves
/// keyboard and layout as they were found.
class X11Typist {
public:
    using Symbols = std::vector<XKeysym>;

    /// `keyboard`, `barrier` and `focus` stand on different connections. Reads the keyboard, which takes most
    /// of the time until the first key, and follows it from then on.
    X11Typist(X11Keyboard& keyboard, TargetBarrier& barrier, KeyboardFocus& focus);
    X11Typist(const X11Typist&) = delete;
    X11Typist& operator=(const X11Typist&) = delete;
    ~X11Typist();

    /// Makes `symbols` writable for the focused application. Once, before all others. With `target`, no key
    /// goes anywhere else.
    void begin(Symbols symbols, std::shared_ptr<const X11Target> target);

    /// Presses the key of the symbol at `position`, with Shift if `withShift` or if the symbol needs it. What
    /// was pressed before is released. Waits while the keys don't go to the target only for the moment.
    PostResult press(std::size_t position, bool withShift = false);

    /// Releases what is pressed.
    PostResult release();

private:
    void followKeyboard();
    std::optional<KeyStroke> findStroke(XKeysym symbol, bool withShift);
    bool pressUndisturbed(const KeyStroke& stroke);
    void lendFrom(std::size_t position);
    void letReadBefore(XKeysym symbol);
    void awaitReading();
    /// Waits until the next key comes alone and goes to the target. Answers why it can't, if so.
    std::optional<PostResult> awaitKeyboard();

    X11Keyboard& m_keyboard;
    TargetBarrier& m_barrier;
    KeyboardFocus& m_focus;
    std::shared_ptr<const X11Target> m_target;
    Symbols m_symbols;
    TypingLedger m_ledger;
    KeymapWatch m_keymapWatch; ///< begins before the layout is read, so that no change is missed
    TypingLayout m_layout;
    SpareKeycodes m_spares;
    ModifierGuard m_guard;
    std::optional<KeyFilterGuard> m_filterGuard; ///< once typing has begun
    std::uint8_t m_group = 0;
    std::optional<KeyStroke> m_pressed;
    bool m_hasTyped = false;      ///< something since the last barrier
    bool m_hasTypedBasic = false; ///< characters of the basic plane since one beyond it
    std::chrono::milliseconds m_patience;
    std::chrono::milliseconds m_restPatience;
};

/// The symbols that have to be made writable so that as many as possible of `symbols` from `start` on can be
/// typed in one go: those that `isWritable` denies, each once, in the order of their appearance, at most
/// `capacity` of them.
std::vector<XKeysym> symbolsToLend(const X11Typist::Symbols& symbols, std::size_t start, std::size_t capacity,
                                   const std::function<bool(XKeysym)>& isWritable);

} // namespace talvera
