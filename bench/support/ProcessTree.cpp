// SPDX-License-Identifier: MIT
#include "support/ProcessTree.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace talvera::bench {

namespace {

namespace fs = std::filesystem;

/// The number behind the name in a file of lines such as "Pss:   123 kB".
std::int64_t fieldOf(const fs::path& path, const std::string& name) {
    std::ifstream file(path);
    for (std::string word; file >> word;) {
        std::int64_t value = 0;
        if (word == name && file >> value)
            return value;
    }
    return 0;
}

fs::path directoryOf(pid_t process) {
    return fs::path("/proc") / std::to_string(process);
}

std::vector<fs::path> threadsOf(pid_t process) {
    std::vector<fs::path> threads;
    std::error_code gone;
    for (const auto& entry : fs::directory_iterator(directoryOf(process) / "task", gone))
        threads.push_back(entry.path());
    return threads;
}

} // namespace

std::vector<pid_t> ProcessTree::processes() const {
    std::vector<pid_t> found = {m_root};
    for (std::size_t i = 0; i < found.size(); ++i) {
        for (const auto& thread : threadsOf(found[i])) {
            std::ifstream children(thread / "children");
            for (pid_t child = 0; children >> child;)
                found.push_back(child);
        }
    }
    return found;
}

ProcessTree::Threads ProcessTree::threads() const {
    Threads all;
    for (const pid_t process : processes()) {
        for (const auto& path : threadsOf(process)) {
            Thread thread;
            std::getline(std::ifstream(path / "comm"), thread.name);
            thread.switches = fieldOf(path / "status", "voluntary_ctxt_switches:") +
                              fieldOf(path / "status", "nonvoluntary_ctxt_switches:");
            std::int64_t nanoseconds = 0;
            std::ifstream(path / "schedstat") >> nanoseconds;
            thread.used = std::chrono::nanoseconds(nanoseconds);
            all[std::stoi(path.filename())] = thread;
        }
    }
    return all;
}

std::chrono::nanoseconds ProcessTree::used() const {
    std::chrono::nanoseconds all{};
    for (const auto& [id, thread] : threads())
        all += thread.used;
    return all;
}

void ProcessTree::awaitRest() const {
    constexpr int quietLooks = 4;
    auto before = used();
    for (int looks = 0, quiet = 0; quiet < quietLooks; ++looks) {
        if (looks > 120)
            throw std::runtime_error("the agent doesn't come to rest");
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        const auto now = used();
        quiet = now == before ? quiet + 1 : 0;
        before = now;
    }
}

double ProcessTree::megabytesOf(const char* field, const std::vector<pid_t>& processes) {
    std::int64_t kilobytes = 0;
    for (const pid_t process : processes)
        kilobytes += fieldOf(directoryOf(process) / "smaps_rollup", field);
    return static_cast<double>(kilobytes) / 1024;
}

} // namespace talvera::bench
