// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace talvera {

/// The clipboard. Any thread. It is served without the main thread's help.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces what the clipboard holds by `text`. True: a paste anywhere now gives this text. False: the
    /// clipboard can't be had, and is as it was.
    virtual bool setString(const QString& text) = 0;
};

} // namespace talvera
