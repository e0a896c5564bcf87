// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/EventTap.h"

#include <optional>

namespace talvera {

class KeyboardLayout;

/// The chord as KWin's shortcuts have it: a key of Qt's by what it writes in the user's layout, with Qt's
/// modifiers. Nothing for chords that can be none of its shortcuts.
std::optional<int> kwinShortcutOf(const KeyChord& chord, KeyboardLayout& layout);

} // namespace talvera
