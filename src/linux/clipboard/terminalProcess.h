// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <sys/types.h>

namespace talvera {

/// Whether a program shows terminals: a terminal emulator holds the other end of its terminals open, or has a
/// helper do so. `programs` are the processes with windows of their own, which are nobody's helpers. A
/// process that can't be looked at counts as a terminal.
bool mayShowTerminals(pid_t process, const std::set<pid_t>& programs);

} // namespace talvera
