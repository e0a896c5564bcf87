// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include <sys/types.h>

namespace talvera {

/// The letter that the kernel has for what the process does: 'R' when it works, 'S' when it sleeps ...
/// Nothing when there is no such process, or no way to know.
std::optional<char> processState(pid_t pid);

/// Whether the process is there and no zombie.
bool processRuns(pid_t pid);

} // namespace talvera
