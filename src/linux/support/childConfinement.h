// SPDX-License-Identifier: MIT
#pragma once

namespace talvera {

/// Takes from this process, and from the program that it becomes, what a server doesn't take that works for
/// us alone: the network and connections to anybody, new processes, and files written outside the working
/// directory. It can still listen on a socket there. Where the kernel hasn't the means it does what can be
/// done, silently. Safe between vfork and exec.
void confineToOwnSocket();

} // namespace talvera
