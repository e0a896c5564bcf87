// SPDX-License-Identifier: MIT
#include "linux/support/processes.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <unistd.h>

namespace talvera {

namespace {

std::string fileOf(pid_t pid, const char* name) {
    std::ostringstream text;
    // Reading fails when the process ends meanwhile, and only operators keep the exception to themselves.
    text << std::ifstream("/proc/" + std::to_string(pid) + "/" + name).rdbuf();
    return text.str();
}

/// What the kernel tells behind the name: "S 1 ..."
std::string afterName(pid_t pid) {
    const std::string line = pid > 0 ? fileOf(pid, "stat") : std::string();
    // "12 (name) S 1 ...": the name may hold anything, parentheses too.
    const auto name = line.rfind(") ");
    return name == std::string::npos ? std::string() : line.substr(name + 2);
}

template <typename Number>
std::optional<Number> numberIn(std::string_view text) {
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() ? std::optional(number) : std::nullopt;
}

/// The entries of a directory that are named by a number.
std::set<pid_t> numbersIn(const std::filesystem::path& directory) {
    std::set<pid_t> numbers;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error)) {
        if (const auto number = numberIn<pid_t>(entry->path().filename().string()))
            numbers.insert(*number);
    }
    return numbers;
}

/// The rest of the line that begins with `name`.
std::string_view valueOf(std::string_view name, std::string_view status) {
    const auto begin = status.find(name);
    if (begin == std::string_view::npos)
        return {};
    const auto value = status.substr(begin + name.size());
    const auto first = value.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view() : value.substr(first);
}

pid_t parentOf(pid_t pid) {
    const std::string state = afterName(pid);
    return state.size() > 2 ? numberIn<pid_t>(std::string_view(state).substr(2)).value_or(0) : 0;
}

} // namespace

std::optional<char> processState(pid_t pid) {
    const std::string state = afterName(pid);
    return state.empty() ? std::nullopt : std::optional(state.front());
}

bool processRuns(pid_t pid) {
    const auto state = processState(pid);
    return state && *state != 'Z' && *state != 'X';
}

std::optional<std::chrono::milliseconds> processStart(pid_t pid) {
    constexpr int fieldsBefore = 19; // the state is the first
    std::istringstream fields(afterName(pid));
    std::string field;
    for (int i = 0; i <= fieldsBefore; ++i)
        fields >> field;
    const auto ticks = fields ? numberIn<std::int64_t>(field) : std::nullopt;
    if (!ticks)
        return std::nullopt;
    return std::chrono::milliseconds(*ticks * 1000 / ::sysconf(_SC_CLK_TCK));
}

std::string processName(pid_t pid) {
    std::string name = fileOf(pid, "comm");
    if (name.ends_with('\n'))
        name.pop_back();
    return name;
}

std::string mappedFiles(pid_t pid) {
    return fileOf(pid, "maps");
}

std::set<pid_t> allProcesses() {
    return numbersIn("/proc");
}

std::multimap<pid_t, pid_t> childrenByParent() {
    std::multimap<pid_t, pid_t> children;
    for (const pid_t process : allProcesses()) {
        if (const pid_t parent = parentOf(process))
            children.emplace(parent, process);
    }
    return children;
}

std::set<pid_t> withDescendants(std::set<pid_t> processes) {
    const auto children = childrenByParent();
    for (std::vector<pid_t> left(processes.begin(), processes.end()); !left.empty();) {
        const auto [first, last] = children.equal_range(left.back());
        left.pop_back();
        for (auto child = first; child != last; ++child) {
            if (processes.insert(child->second).second)
                left.push_back(child->second);
        }
    }
    return processes;
}

std::set<pid_t> threadsOf(const std::set<pid_t>& processes) {
    std::set<pid_t> threads;
    for (const pid_t process : processes)
        threads.merge(numbersIn("/proc/" + std::to_string(process) + "/task"));
    return threads;
}

std::optional<std::map<pid_t, std::uint64_t>> sleepsOf(const std::set<pid_t>& threads) {
    std::map<pid_t, std::uint64_t> sleeps;
    for (const pid_t thread : threads) {
        const std::string status = fileOf(thread, "status");
        const auto state = valueOf("\nState:", status);
        if (state.empty() || state.front() == 'Z' || state.front() == 'X')
            continue;
        const auto count = numberIn<std::uint64_t>(valueOf("\nvoluntary_ctxt_switches:", status));
        if (state.front() != 'S' || !count)
            return std::nullopt;
        sleeps[thread] = *count;
    }
    return sleeps;
}

} // namespace talvera
