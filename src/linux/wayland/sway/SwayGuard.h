// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <sys/types.h>

namespace talvera {

/// A small process beside the agent that undoes at sway what the agent can't undo any more: sway keeps a
/// binding whose maker has died, and with it the key from all applications. It sleeps until the agent is
/// gone, however that has come. Main thread.
class SwayGuard {
public:
    /// `socket` is the path of sway's.
    explicit SwayGuard(QString socket);
    SwayGuard(const SwayGuard&) = delete;
    SwayGuard& operator=(const SwayGuard&) = delete;
    /// The guard ends as well, and does nothing.
    ~SwayGuard();

    /// What sway is told to do in its mode "default" when we have died, in place of what was said before;
    /// nothing if that is empty. Starts the process the first time; what the guard of an agent that has just
    /// died still has to undo is waited for then, for a second at most. Where no process can be had, nobody
    /// guards.
    void afterOurDeath(const QByteArray& commands);

private:
    void start();

    const QString m_socket;
    bool m_wasStarted = false;
    pid_t m_process = -1;
    FileDescriptor m_orders; ///< our end of its standard input
};

} // namespace talvera
