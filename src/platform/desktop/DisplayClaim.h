// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace talvera {

/// The place of the one agent on a display. It belongs to the display and not to a user, a directory or an
/// environment: its holder is alone there, another display has a place of its own, and it is free again
/// as soon as the holder has ended, whichever way that was. Main thread only.
class DisplayClaim {
public:
    virtual ~DisplayClaim() = default;

    /// We hold the place.
    virtual bool isOurs() const = 0;

    /// For a process that doesn't hold it: tells the holder that there was another start, and what it was
    /// for; at most 1000 bytes. False when the holder doesn't answer within two seconds.
    virtual bool tellHolder(const QString& purpose) = 0;

    /// For the holder: `heard` is called from the event loop for every other start from now on, and for those
    /// that have told us before. Any program of the session can tell us, so the purpose may be anything.
    virtual void onSecondStart(std::function<void(const QString& purpose)> heard) = 0;
};

} // namespace talvera
