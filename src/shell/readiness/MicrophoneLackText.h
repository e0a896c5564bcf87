// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/MicrophonePermission.h"

#include <QString>

namespace talvera {

/// Why we can't listen and what the user can do about it, in a plain sentence; empty when nothing is lacking.
QString microphoneLackText(MicrophoneLack lack);

} // namespace talvera
