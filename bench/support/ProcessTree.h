// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

namespace talvera::bench {

/// What a program and all the processes that it has started cost, as the kernel counts it.
class ProcessTree {
public:
    struct Thread {
        std::string name;
        std::int64_t switches = 0; ///< how often it was woken or interrupted
        std::chrono::nanoseconds used{};
    };
    using Threads = std::map<pid_t, Thread>;

    explicit ProcessTree(pid_t root)
        : m_root(root) {}

    std::vector<pid_t> processes() const;
    Threads threads() const;
    std::chrono::nanoseconds used() const;

    /// Returns when they have used no processor time for two seconds. Throws std::runtime_error when that
    /// takes longer than a minute.
    void awaitRest() const;

    /// The memory of all, where what is shared with others counts by its share. MB of 1024 * 1024 bytes.
    double megabytes() const { return megabytesOf("Pss:", processes()); }
    /// Of that, what stands in no file: it doesn't depend on which other programs use the same libraries.
    double ownMegabytes() const { return megabytesOf("Pss_Anon:", processes()); }
    /// The same of the program alone, without the processes that it has started.
    double megabytesOfRoot() const { return megabytesOf("Pss:", {m_root}); }
    double ownMegabytesOfRoot() const { return megabytesOf("Pss_Anon:", {m_root}); }

private:
    static double megabytesOf(const char* field, const std::vector<pid_t>& processes);

    pid_t m_root;
};

} // namespace talvera::bench
