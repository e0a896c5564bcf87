// SPDX-License-Identifier: MIT
#pragma once

#include "linux/support/FileDescriptor.h"
#include "platform/system/ChildProcess.h"

#include <sys/types.h>

namespace talvera {

/// A child that runs, and what we hold of it. Its holder must wait for it, else it stays as a zombie.
struct LaunchedChild {
    pid_t pid = -1;                ///< also its process group
    FileDescriptor handle;         ///< readable when it has ended
    FileDescriptor standardOutput; ///< our end of its pipe
    FileDescriptor standardError;  ///< the same; reading from both never waits
};

/// What a child may reach.
enum class ChildReach {
    AsWe,         ///< all that we do
    ItsOwnSocket, ///< see confineToOwnSocket(); and of the environment only where programs are and the
    ///< language, so that no setting or file of the user's reaches it. Its home is where it works
};

/// Whether the program's file says "talvera: waits for TALVERA_INPUT_FD": it can be started ahead of its
/// input.
bool waitsForInput(const QString& executable);

/// Starts the program. A file that says "talvera: takes --prompt /dev/fd/N" gets the value of the request's
/// private option as an open descriptor, whose path stands for it in the command line; all others get the
/// value itself. With an open `input`, the program gets that descriptor, too, and its number in the
/// environment. The program leaves no core file. Throws PlatformError (domain "ChildProcess", code errno); no
/// child is left then.
LaunchedChild launchChild(const ChildProcessRequest& request, ChildReach reach = ChildReach::AsWe,
                          const FileDescriptor& input = {});

} // namespace talvera
