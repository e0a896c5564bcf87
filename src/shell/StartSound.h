// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SoundPlayer.h"

namespace talvera {

/// Plays the chime that tells the user to speak; "Off" is silence.
inline void playStartSound(SoundPlayer& sounds, const QString& name) {
    if (name != QStringLiteral("Off"))
        sounds.play(name);
}

} // namespace talvera
