// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>

namespace talvera {

/// The clipboard. Any thread. It is served without the main thread's help.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces what the clipboard holds by `text`. True: a paste anywhere now gives this text. False: the
    /// clipboard can't be had, and is as it was.
    virtual bool setString(const QString& text) = 0;

    /// How the text fares that was set last.
    struct State {
        bool isHeld =
            false; ///< a paste anywhere still gives it: no other program has taken the clipboard since
        std::uint32_t requests = 0; ///< how often a program has asked for it so far
    };
    virtual State state() = 0;
};

} // namespace talvera
