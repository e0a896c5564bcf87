// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

namespace talvera {

/// Whether the process is there and not just waiting to be buried.
bool processRuns(pid_t pid);

} // namespace talvera
