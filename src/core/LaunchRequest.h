// SPDX-License-Identifier: MIT
#pragma once

#include "shell/settings/SettingsSectionID.h"

#include <QStringList>

#include <optional>

namespace talvera {

/// What a start of the program is for, which an agent that runs already may be asked for as well.
struct LaunchRequest {
    bool opensSettings = false;
    std::optional<SettingsSectionID> section{}; ///< of the settings

    /// What the arguments after the program's name ask for: `--settings [section]`; others are the toolkit's.
    /// Nothing when there is no such section.
    static std::optional<LaunchRequest> of(const QStringList& arguments);

    /// The arguments that ask for it.
    QStringList arguments() const;

    bool operator==(const LaunchRequest&) const = default;
};

} // namespace talvera
