// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

/// Notes that the rooms of x11 leave at the server for each other and for a later process of ours, as
/// properties of the root window that hold 32-bit items.
namespace talvera::serverNotes {

/// What typing owes to the user: the modifiers whose locks are lifted, those of them to lock in the end, the
/// key filters to switch on, then pairs of a lent keycode and its symbol. Missing while nothing is owed.
inline constexpr std::string_view typing = "_TALVERA_TYPING";

/// The keycodes which the server gives to us even when it is we who type them, since they are chords of
/// ours with no modifier but Shift. Missing when there are none.
inline constexpr std::string_view reservedKeys = "_TALVERA_RESERVED_KEYS";

} // namespace talvera::serverNotes
