// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"

#include <QString>

#include <compare>
#include <cstdint>
#include <set>

namespace talvera {

/// A key with exactly these modifiers, as GNOME Shell keeps it for programs.
struct ShellAccelerator {
    std::uint64_t modifiers = 0; ///< KeyFlag bits
    VirtualKey key = {};
    int keycode = 0; ///< its X keycode

    auto operator<=>(const ShellAccelerator&) const = default;
};

/// All that a chord needs, since the Shell takes other modifiers than those named for another chord. None for
/// a chord that it has no name for.
std::set<ShellAccelerator> acceleratorsOf(const KeyChord& chord);

/// As the Shell reads it. By the key's place on the keyboard, which no layout moves.
QString nameOf(const ShellAccelerator& accelerator);

} // namespace talvera
