// SPDX-License-Identifier: MIT
#include "receivers/processGroup.h"

#include <spawn.h>
#include <stdexcept>

extern char** environ; // NOLINT(readability-redundant-declaration): not declared by every C library

namespace talvera::test {

pid_t startProcessGroup(std::vector<std::string> command) {
    std::vector<char*> arguments;
    for (std::string& word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    pid_t process = 0;
    const int error = ::posix_spawnp(&process, arguments[0], nullptr, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    if (error != 0)
        throw std::runtime_error("can't start " + command.front());
    return process;
}

} // namespace talvera::test
