// SPDX-License-Identifier: MIT
#include "linux/clipboard/terminalProcess.h"

#include "linux/support/processes.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace talvera {

namespace {

constexpr std::size_t mostHelpers = 1000;

/// Null when there is no such process, as when it has ended meanwhile.
std::optional<bool> holdsTerminal(pid_t process) {
    std::error_code error;
    const std::string directory = "/proc/" + std::to_string(process) + "/fd";
    for (std::filesystem::directory_iterator descriptor(directory, error), end; !error && descriptor != end;
         descriptor.increment(error)) {
        const std::string target = std::filesystem::read_symlink(descriptor->path(), error);
        if (target == "/dev/ptmx" || target == "/dev/pts/ptmx")
            return true;
        error.clear(); // a descriptor that was closed meanwhile
    }
    if (error == std::errc::no_such_file_or_directory || error == std::errc::no_such_process)
        return std::nullopt;
    return static_cast<bool>(error);
}

} // namespace

bool mayShowTerminals(pid_t process, const std::set<pid_t>& programs) {
    const auto children = childrenByParent();
    std::vector<pid_t> helpers{process};
    for (std::size_t index = 0; index < helpers.size() && index < mostHelpers; ++index) {
        const bool isItself = index == 0; // a helper that has ended shows nothing any more
        if (holdsTerminal(helpers[index]).value_or(isItself))
            return true;
        const auto [first, last] = children.equal_range(helpers[index]);
        std::for_each(first, last, [&](const auto& child) {
            if (!programs.contains(child.second))
                helpers.push_back(child.second);
        });
    }
    return false;
}

} // namespace talvera
