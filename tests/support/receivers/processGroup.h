// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace talvera::test {

/// Starts a program, found like a shell does, as the leader of a process group, so that a signal to the group
/// also reaches what the program starts. Throws std::runtime_error when it can't be started.
pid_t startProcessGroup(std::vector<std::string> command);

} // namespace talvera::test
