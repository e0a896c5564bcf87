// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>

#include <sys/types.h>

namespace talvera {

/// The letter that the kernel has for what the process does: 'R' when it works, 'S' when it sleeps ...
/// Nothing when there is no such process, or no way to know.
std::optional<char> processState(pid_t pid);

/// Whether the process is there and no zombie.
bool processRuns(pid_t pid);

/// When it was started, since the machine was, to a hundredth of a second. Nothing when there is no such
/// process.
std::optional<std::chrono::milliseconds> processStart(pid_t pid);

/// The name that the kernel has for it, of at most 15 characters; empty when there is no such process.
std::string processName(pid_t pid);

/// The files that the process has mapped, programs and libraries among them, as the kernel lists them; empty
/// when that can't be known.
std::string mappedFiles(pid_t pid);

/// All processes of the machine.
std::set<pid_t> allProcesses();

/// The same, by the one that has started them, or that looks after them since that one has ended.
std::multimap<pid_t, pid_t> childrenByParent();

/// These processes and all that they have started, by way of others too.
std::set<pid_t> withDescendants(std::set<pid_t> processes);

/// The threads of these processes.
std::set<pid_t> threadsOf(const std::set<pid_t>& processes);

/// How often each thread has gone to sleep; nothing while one of them is awake. When two answers are equal,
/// none of the threads has done anything in between. A thread that has ended has no part in it.
std::optional<std::map<pid_t, std::uint64_t>> sleepsOf(const std::set<pid_t>& threads);

} // namespace talvera
