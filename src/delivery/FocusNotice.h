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
        ClipboardFocusLost,   ///< the focus went elsewhere before the whole text was typed or pasted
        ClipboardNotPossible, ///< the text can't be typed or pasted, or not all of it
        ClipboardNotTaken,    ///< the chord that pastes was pressed, but no program has asked for the text
        Undelivered,          ///< nor does the clipboard take it
    };

    Kind kind;
    QString appName = {}; ///< of the first three kinds; empty when the application has no name

    bool operator==(const FocusNotice&) const = default;
};

} // namespace talvera
