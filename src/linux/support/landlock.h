// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

/// Landlock, by which a process gives up rights to files and the network for good. The kernel's own headers
/// of this age don't know all of it. Nothing else of ours is in here: the recogniser is built with it, too.
namespace talvera::landlock {

constexpr long createRuleset = 444; ///< numbers of system calls, on every machine
constexpr long addRule = 445;
constexpr long restrictSelf = 446;

constexpr std::uint32_t askForVersion = 1;
constexpr int ruleBeneathPath = 1;

// Rights to files
constexpr std::uint64_t writeFile = 1U << 1;
constexpr std::uint64_t readFile = 1U << 2;
constexpr std::uint64_t makeFile = 1U << 8;
constexpr std::uint64_t firstRights = (1U << 13) - 1;        ///< all of the first version
constexpr std::uint64_t removeAndMake = firstRights & ~0xFU; ///< everything behind the first four of them
constexpr std::uint64_t referToOther = 1U << 13;  ///< linking and moving between directories, from version 2
constexpr std::uint64_t truncateFile = 1U << 14;  ///< from version 3
constexpr std::uint64_t controlDevice = 1U << 15; ///< from version 5

constexpr std::uint64_t bindAndConnect = 1U << 0 | 1U << 1;            ///< rights to the network
constexpr std::uint64_t abstractSocketsAndSignals = 1U << 0 | 1U << 1; ///< ways out of the own circle

/// What is taken away where no rule gives it back.
struct Ruleset {
    std::uint64_t files;
    std::uint64_t network; ///< from version 4
    std::uint64_t scopes;  ///< from version 6
};

struct [[gnu::packed]] PathRule {
    std::uint64_t rights;
    std::int32_t path; ///< a descriptor
};

/// A kernel takes no more of the structure than it knows.
constexpr std::size_t rulesetSize(int version) {
    if (version < 4)
        return offsetof(Ruleset, network);
    return version < 6 ? offsetof(Ruleset, scopes) : sizeof(Ruleset);
}

} // namespace talvera::landlock
