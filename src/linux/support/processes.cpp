// SPDX-License-Identifier: MIT
#include "linux/support/processes.h"

#include <fstream>
#include <iterator>
#include <string>

namespace talvera {

std::optional<char> processState(pid_t pid) {
    if (pid <= 0)
        return std::nullopt;
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    const std::string line{std::istreambuf_iterator<char>(file), {}};
    // "12 (name) S 1 ...": the name may hold anything, parentheses too.
    const auto afterName = line.rfind(") ");
    if (afterName == std::string::npos || line.size() < afterName + 3)
        return std::nullopt;
    return line[afterName + 2];
}

bool processRuns(pid_t pid) {
    const auto state = processState(pid);
    return state && *state != 'Z' && *state != 'X';
}

} // namespace talvera
