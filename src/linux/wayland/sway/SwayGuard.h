// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/DeathGuard.h"

#include <QByteArray>
#include <QString>

namespace talvera {

/// Undoes at sway what the agent can't undo any more: sway keeps a binding whose maker has died, and with it
/// the key from all applications. Main thread.
class SwayGuard {
public:
    /// `socket` is the path of sway's.
    explicit SwayGuard(const QString& socket);

    /// What sway is told to do in its mode "default" when we have died, in place of what was said before;
    /// nothing if that is empty.
    void afterOurDeath(const QByteArray& commands) { m_guard.afterOurDeath(commands); }

private:
    DeathGuard m_guard;
};

} // namespace talvera
