// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// What the user has to be told about a delivery.
struct FocusNotice {
    enum class Kind {
        PastedIn, ///< delivered after the application was brought back
        ClipboardOriginalGone,
        ClipboardReactivateFailed,
        ClipboardByUserPreference,
        ClipboardNoTextField,
    };

    Kind kind;
    QString appName = {}; ///< of the first three kinds; empty when the application has no name

    bool operator==(const FocusNotice&) const = default;
};

} // namespace talvera
