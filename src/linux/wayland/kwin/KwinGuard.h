// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/DeathGuard.h"

#include <QString>
#include <QStringList>

namespace talvera {

/// Undoes at KWin what the agent can't undo any more: KWin keeps the shortcuts of a program that has died,
/// and with them the keys from all applications, and its scripts as well. Main thread.
class KwinGuard {
public:
    KwinGuard();

    /// The shortcuts, by the names of their actions, in place of those that were said before.
    void guardShortcuts(const QStringList& actions);
    void guardScripts(const QStringList& names);

private:
    void order();

    QStringList m_actions;
    QStringList m_scripts;
    DeathGuard m_guard;
};

} // namespace talvera
