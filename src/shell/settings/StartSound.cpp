// SPDX-License-Identifier: MIT
#include "shell/settings/StartSound.h"

#include <algorithm>

namespace talvera {

const std::vector<StartSound>& StartSound::all() {
    static const std::vector<StartSound> rows{
        {QStringLiteral("Off")},    {QStringLiteral("Basso")},     {QStringLiteral("Blow")},
        {QStringLiteral("Bottle")}, {QStringLiteral("Frog")},      {QStringLiteral("Funk")},
        {QStringLiteral("Glass")},  {QStringLiteral("Hero")},      {QStringLiteral("Morse")},
        {QStringLiteral("Ping")},   {QStringLiteral("Pop")},       {QStringLiteral("Purr")},
        {QStringLiteral("Sosumi")}, {QStringLiteral("Submarine")}, {QStringLiteral("Tink")},
    };
    return rows;
}

const StartSound& StartSound::byName(const QString& name) {
    static const StartSound submarine{QStringLiteral("Submarine")};
    const auto row = std::find_if(all().begin(), all().end(), [&](const auto& r) { return r.name == name; });
    return row != all().end() ? *row : submarine;
}

void playStartSound(SoundPlayer& sounds, const QString& name) {
    if (name != u"Off")
        sounds.play(name);
}

} // namespace talvera
