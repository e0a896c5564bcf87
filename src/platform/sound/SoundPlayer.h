// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// Plays short sounds. Main thread only; returns at once.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;

    /// Plays the sound of that name from its beginning; an unknown name is silent.
    virtual void play(const QString& name) = 0;
};

} // namespace talvera
