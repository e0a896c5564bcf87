// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

#include <sys/types.h>

namespace talvera {

/// A program of the session that has windows.
struct RunningApplication {
    pid_t pid = 0;
    std::optional<QString> bundleID;      ///< desktop-file id, or the window's class
    std::optional<QString> localizedName; ///< what the user calls it

    bool operator==(const RunningApplication&) const = default;
};

/// Which applications run, and which one is in front. Main thread only; every call returns at once.
class Workspace {
public:
    virtual ~Workspace() = default;

    virtual std::optional<RunningApplication> frontmostApplication() = 0;

    /// Nothing when no such process runs.
    virtual std::optional<RunningApplication> runningApplication(pid_t pid) = 0;

    /// Asks for the process's most recently active window to come to the front; true when the request could
    /// be made, which is no promise that it is granted.
    virtual bool activate(pid_t pid) = 0;

    /// Our own identifier, to know ourselves by.
    virtual std::optional<QString> ownBundleID() = 0;
};

} // namespace talvera
