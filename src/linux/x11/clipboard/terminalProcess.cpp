// SPDX-License-Identifier: MIT
#include "linux/x11/clipboard/terminalProcess.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace talvera {

namespace {

constexpr std::size_t mostHelpers = 1000;

std::optional<pid_t> numberOf(const std::string& name) {
    pid_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    return error == std::errc() && end == name.data() + name.size() ? std::optional(number) : std::nullopt;
}

std::optional<pid_t> parentOf(const std::filesystem::path& process) {
    std::ifstream file(process / "stat");
    std::string line;
    std::getline(file, line);
    const std::size_t name = line.rfind(") "); // which may hold anything
    pid_t parent = 0;
    if (name == std::string::npos || name + 4 >= line.size())
        return std::nullopt;
    std::from_chars(line.data() + name + 4, line.data() + line.size(), parent); // behind the state's letter
    return parent;
}

std::multimap<pid_t, pid_t> childrenByParent() {
    std::multimap<pid_t, pid_t> children;
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
         entry.increment(error)) {
        const auto process = numberOf(entry->path().filename().string());
        const auto parent = process ? parentOf(entry->path()) : std::nullopt;
        if (parent)
            children.emplace(*parent, *process);
    }
    return children;
}

bool holdsTerminal(pid_t process) {
    std::error_code error;
    const std::string directory = "/proc/" + std::to_string(process) + "/fd";
    for (std::filesystem::directory_iterator descriptor(directory, error), end; !error && descriptor != end;
         descriptor.increment(error)) {
        const std::string target = std::filesystem::read_symlink(descriptor->path(), error);
        if (target == "/dev/ptmx" || target == "/dev/pts/ptmx")
            return true;
        error.clear(); // a descriptor that was closed meanwhile
    }
    return static_cast<bool>(error);
}

} // namespace

bool mayShowTerminals(pid_t process, const std::set<pid_t>& programs) {
    const auto children = childrenByParent();
    std::vector<pid_t> helpers{process};
    for (std::size_t index = 0; index < helpers.size() && index < mostHelpers; ++index) {
        if (holdsTerminal(helpers[index]))
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
