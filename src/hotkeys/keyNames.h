// SPDX-License-Identifier: MIT
#pragma once

#include "hotkeys/HotkeyBinding.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace talvera {

// What keys are called, in the words of the loaded catalogs. The catalogs fit the names to the keyboards of
// the desktop. Main thread only.

/// A special key that is held alone.
QString specialKeyName(HotkeyBinding::SpecialKey key);

/// The names of the modifiers among these KeyFlag bits, one after the other, as they stand before a key's
/// name.
QString modifierNames(std::uint64_t modifiers);

/// What stands on the cap of a special key.
QString specialKeyCap(HotkeyBinding::SpecialKey key);

/// What stands on the caps of the modifiers among these KeyFlag bits, in the order of their names.
QStringList modifierCaps(std::uint64_t modifiers);

/// The name of a key that is called the same on every layout; nothing for others.
std::optional<QString> fixedKeyName(VirtualKey key);

/// The name of a key that writes no character.
QString nameOfKeyWithoutCharacter(VirtualKey key);

} // namespace talvera
