// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// The clipboard. Any thread. It is served without the main thread's help.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces what the clipboard holds by `text`. When it returns, a paste anywhere gives this text.
    virtual void setString(const QString& text) = 0;
};

} // namespace talvera
