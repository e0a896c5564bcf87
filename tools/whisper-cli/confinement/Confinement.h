// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <linux/filter.h>

namespace talvera::confinement {

/// What the recogniser still has to reach once it has read its command line.
struct NeededFiles {
    std::vector<std::string> read;    ///< files: the model and the recordings
    std::vector<std::string> written; ///< paths whose directories get new files
};

/// Nobody who finds a core file, and no other process of the user, reads what was said.
void keepMemoryPrivate();

/// The prompt that `value` stands for: of "/dev/fd/N" what descriptor N holds, which is closed then; of
/// everything else the value itself. Command lines can be read by every user of the machine, descriptors by
/// none. Nothing when the descriptor can't be read.
std::optional<std::string> promptOf(const std::string& value);

/// Gives up, for good and for all threads, what recognising speech doesn't take: other files, the network,
/// other programs and processes. Where the kernel hasn't the means it does what can be done, silently.
void confine(const NeededFiles& files);

/// The two halves of that; false when the kernel hasn't the means, or not for us.
bool confineFiles(const NeededFiles& files);
bool confineCalls();

/// The rights that a kernel of this version of Landlock is to take away where no rule gives them back.
std::uint64_t fileRights(int version);

/// What the kernel runs on each system call.
std::vector<sock_filter> callFilter();

} // namespace talvera::confinement
