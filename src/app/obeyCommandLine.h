// SPDX-License-Identifier: MIT
#pragma once

#include "app/CommandLine.h"

namespace talvera {

class Console;
struct Directories;

/// How the program ends when it was started for something else than to be the agent.
enum class ExitStatus {
    Done = 0,
    Failed = 1, ///< the agent doesn't answer, or doesn't know the command
    Misuse = 2,
    NotRunning = 3, ///< there is no agent in this session
};

/// Does what the program is started for, unless that is to be the agent, and says in the user's language what
/// there is to say. Needs the application object.
ExitStatus obeyCommandLine(const CommandLine::Purpose& purpose, const Directories& directories,
                           Console& console);

} // namespace talvera
