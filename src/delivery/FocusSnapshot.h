// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

#include <sys/types.h>

namespace talvera {

/// Where a dictation is meant to go: the application that was in front, with a text field in focus, when the
/// recording began.
struct FocusSnapshot {
    pid_t pid = 0;
    std::optional<QString> bundleID;
    std::optional<QString> localizedName; ///< for notices only

    bool operator==(const FocusSnapshot&) const = default;
};

} // namespace talvera
