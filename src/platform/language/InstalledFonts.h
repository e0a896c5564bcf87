// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// The fonts of this computer. Main thread only.
class InstalledFonts {
public:
    virtual ~InstalledFonts() = default;

    /// Whether each character of the text is in one of them, so that our windows don't show boxes for it.
    virtual bool canShow(const QString& text) = 0;
};

} // namespace talvera
