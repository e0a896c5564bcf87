// SPDX-License-Identifier: MIT
#pragma once

#include "platform/system/Directories.h"

#include <QString>

namespace talvera {

/// Where the desktop's base-directory rules put things.
class XdgDirectories {
public:
    /// What the rules go by; empty where a variable isn't set.
    struct Environment {
        QString home;
        QString dataHome;        ///< XDG_DATA_HOME
        QString configHome;      ///< XDG_CONFIG_HOME
        QString runtime;         ///< XDG_RUNTIME_DIR
        QString systemTemporary; ///< TMPDIR
        QString program;         ///< the path of the running program
    };

    XdgDirectories() = delete;

    /// The user's home: $HOME, or where that isn't set what the system knows.
    static QString home();

    /// The environment of this process.
    static Environment environment();

    /// The directories of this user. The temporary one exists afterwards, belongs to us, and no other user
    /// can look into it; throws PlatformError (domain "XdgDirectories", code errno) when no such directory
    /// can be had.
    static Directories directories(const Environment& environment = XdgDirectories::environment());
};

} // namespace talvera
