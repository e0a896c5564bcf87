// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace talvera {

/// What a key writes or does, as X numbers it, such as XKeysym{XKB_KEY_Return}. One keycode has several, for
/// the modifiers and the group of the layout that are in force.
enum class XKeysym : std::uint32_t {};

/// Stands for none.
inline constexpr XKeysym noKeysym{0};

} // namespace talvera
