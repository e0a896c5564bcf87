// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// Where things lie for this user; absolute paths without a slash at the end.
struct Directories {
    QString temporary;          ///< private (0700); recorded speech lies here and nowhere else
    QString applicationSupport; ///< the user's data of all applications; ours is "Talvera" in it
    QString configuration;      ///< where the preference store lies
    QString resources;          ///< what was installed with the program; "Resources/whisper-cli" lies in it
};

} // namespace talvera
