// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"

#include <QByteArray>

#include <string>
#include <vector>

#include <sys/types.h>

namespace talvera {

/// A small process beside the agent that undoes what the agent can't undo any more: some compositors keep
/// what a program has asked for when that program has died. It sleeps until the agent is gone, however that
/// has come. Main thread.
class DeathGuard {
public:
    /// `name` is that of what is guarded: one guard at a time has it. `script` is what a shell does after our
    /// death, with the order in $last and `arguments` from $1 on.
    DeathGuard(QByteArray name, std::string script, std::vector<std::string> arguments = {});
    DeathGuard(const DeathGuard&) = delete;
    DeathGuard& operator=(const DeathGuard&) = delete;
    /// The guard ends as well, and does nothing.
    ~DeathGuard();

    /// The order for when we have died, a line, in place of what was said before; nothing is done if it is
    /// empty. Starts the process the first time; what the guard of an agent that has just died still has to
    /// undo is waited for then, for a second at most. Where no process can be had, nobody guards.
    void afterOurDeath(const QByteArray& order);

private:
    void start();

    const QByteArray m_name;
    const std::string m_script;
    const std::vector<std::string> m_arguments;
    bool m_wasStarted = false;
    pid_t m_process = -1;
    FileDescriptor m_orders; ///< our end of its standard input
};

} // namespace talvera
