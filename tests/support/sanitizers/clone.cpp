// SPDX-License-Identifier: MIT
#include <cstdarg>
#include <sched.h>

// Qt begins its processes by a clone that shares the memory with the child until that has executed another
// program. There the thread sanitizer stops looking, as after any fork, and since the memory is shared it
// stops looking in the parent too: from then on it sees no lock taken by this thread, and calls everything a
// race. So the child gets a memory of its own.
extern "C" {
int __clone(int (*work)(void*), void* stack, int flags, void* argument, ...);

int clone(int (*work)(void*), void* stack, int flags, void* argument, ...) noexcept {
    std::va_list more;
    va_start(more, argument);
    auto* const parentId = va_arg(more, pid_t*);
    auto* const tls = va_arg(more, void*);
    auto* const childId = va_arg(more, pid_t*);
    va_end(more);
    return __clone(work, stack, flags & ~(CLONE_VM | CLONE_VFORK), argument, parentId, tls, childId);
}
}
