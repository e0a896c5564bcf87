// SPDX-License-Identifier: MIT
#pragma once

#include "platform/sound/SoundPlayer.h"

#include <QHashFunctions>
#include <QString>

#include <vector>

namespace talvera {

/// A chime that tells the user to speak, or "Off" for silence.
struct StartSound {
    QString name;

    bool operator==(const StartSound&) const = default;

    /// All of them, in display order.
    static const std::vector<StartSound>& all();

    /// The row with exactly this name, else "Submarine": what a picker shows as chosen. What is played goes
    /// by the stored name itself.
    static const StartSound& byName(const QString& name);
};

inline size_t qHash(const StartSound& sound, size_t seed = 0) {
    return qHash(sound.name, seed);
}

/// Plays the chime of this name; "Off" is silence, and so is a name that the system doesn't know.
void playStartSound(SoundPlayer& sounds, const QString& name);

} // namespace talvera
