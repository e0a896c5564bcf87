// SPDX-License-Identifier: MIT
#pragma once

#include "platform/desktop/SessionLack.h"

#include <QString>

namespace talvera {

/// Why we can't work in this session, in a plain sentence for the user.
QString sessionLackText(SessionLack lack);

} // namespace talvera
