// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/Accessibility.h"

namespace talvera {

/// What has the focus in a window of this program. Asked of the toolkit directly: over the bus we would wait
/// for our own answer. Main thread.
FocusedElement ownFocusedElement();

} // namespace talvera
