// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace talvera {

class X11Connection;

/// The property of the root window in which typing notes what it has changed for the time being. Its first
/// two items are those of LiftedLocks.
inline constexpr std::string_view typingLedgerProperty = "_TALVERA_TYPING";

/// What a text that is being typed has lifted of the user's locks, such as Caps Lock, as sets of modifiers.
struct LiftedLocks {
    std::uint8_t lifted = 0;
    std::uint8_t locked = 0; ///< of the lifted ones, those that are locked again in the end
};
LiftedLocks liftedLocks(X11Connection& connection);

} // namespace talvera
