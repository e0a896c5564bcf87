// SPDX-License-Identifier: MIT
#pragma once

#include "platform/keyboard/VirtualKey.h"

#include <xkbcommon/xkbcommon.h>

namespace talvera {

class KeyboardLayout;

/// What a key means without modifiers: by `layout` where it writes something there, else as on all layouts.
/// XKB_KEY_NoSymbol for a key that means nothing.
xkb_keysym_t keysymOf(VirtualKey key, KeyboardLayout& layout);

} // namespace talvera
