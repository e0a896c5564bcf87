// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <string>

namespace talvera {

/// The characters of `chunk` that can be typed, in order: a line break in any spelling is U+000A, a tab is
/// U+0009, other control characters do not exist on a keyboard and are left out.
std::u32string typeableCharacters(const QString& chunk);

} // namespace talvera
