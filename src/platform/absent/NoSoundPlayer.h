// SPDX-License-Identifier: MIT
#pragma once

#include "platform/SoundPlayer.h"

namespace talvera {

/// Silence.
class NoSoundPlayer final : public SoundPlayer {
public:
    void play(const QString&) override {}
};

} // namespace talvera
