// SPDX-License-Identifier: MIT
#pragma once

#include "core/AgentCommand.h"

#include <QStringList>

#include <variant>

namespace talvera {

/// What the program is started for.
struct CommandLine {
    /// To be the agent; the arguments are the toolkit's.
    struct Run {};
    /// To have the agent that runs do something.
    struct Command {
        AgentCommand command;
    };
    struct Help {};
    struct Version {};
    /// For nothing that we know.
    struct Misuse {
        QString arguments;
    };
    using Purpose = std::variant<Run, Command, Help, Version, Misuse>;

    /// Of the arguments that follow the program's name. A first one that is a plain word is a command's, and
    /// an option that isn't ours is the toolkit's.
    static Purpose purposeOf(const QStringList& arguments);
};

} // namespace talvera
