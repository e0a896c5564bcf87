// SPDX-License-Identifier: MIT
#pragma once

#include "linux/commands/CommandSocket.h"

#include <QStringList>

#include <chrono>
#include <variant>

namespace talvera {

/// Why an agent has not answered.
enum class AgentSilence {
    NotRunning, ///< there is none in this session
    NoAnswer,   ///< it hangs, or has ended meanwhile
};

/// Asks the agent that listens at one of `paths`, the first that there is, and waits for its reply, but not
/// longer than `limit`. Needs an application object, and no event loop.
std::variant<CommandReply, AgentSilence> askAgent(const QStringList& paths, const QStringList& words,
                                                  std::chrono::milliseconds limit = std::chrono::seconds(10));

} // namespace talvera
