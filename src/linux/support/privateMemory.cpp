// SPDX-License-Identifier: MIT
#include "linux/support/privateMemory.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace talvera {

void leaveNoCoreFile() {
    rlimit limit{};
    ::getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = 0;
    ::setrlimit(RLIMIT_CORE, &limit);
}

void keepMemoryPrivate() {
    ::prctl(PR_SET_DUMPABLE, 0);
}

} // namespace talvera
