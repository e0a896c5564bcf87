// SPDX-License-Identifier: MIT
#include "linux/support/DeathGuard.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <iterator>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>

extern char** environ; // NOLINT(readability-redundant-declaration): not declared by every C library

namespace talvera {

namespace {

/// The last line stands when no more can come.
constexpr auto awaitDeath = R"sh(
while IFS= read -r line; do last=$line; done
[ -n "$last" ] || exit 0
)sh";

/// A name that one process at a time can have, and whoever inherits the descriptor with it. The kernel frees
/// it with the last of them, and no file is left.
FileDescriptor nameFor(const QByteArray& guarded) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto name = "talvera-guard:" + guarded.right(80); // behind a zero byte: no path
    std::copy(name.begin(), name.end(), address.sun_path + 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const bool isOurs =
        socket.isOpen() && ::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), length) == 0;
    return isOurs ? std::move(socket) : FileDescriptor();
}

FileDescriptor awaitName(const QByteArray& guarded) {
    constexpr std::chrono::milliseconds pause(5);
    constexpr int pauses = 200;
    auto name = nameFor(guarded);
    for (int i = 0; i < pauses && !name.isOpen(); ++i) {
        std::this_thread::sleep_for(pause);
        name = nameFor(guarded);
    }
    return name;
}

/// The process, or -1. It is in a session of its own, so that no signal to ours reaches it.
pid_t spawnGuard(std::vector<std::string> words, int orders, int name) {
    constexpr int inheritedName = 3;
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, orders, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&files, STDOUT_FILENO, STDERR_FILENO);
    if (name >= 0)
        posix_spawn_file_actions_adddup2(&files, name, inheritedName);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);

    std::vector<char*> arguments;
    std::ranges::transform(words, std::back_inserter(arguments),
                           [](std::string& word) { return word.data(); });
    arguments.push_back(nullptr);
    pid_t process = -1;
    const int error = ::posix_spawn(&process, "/bin/sh", &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error == 0 ? process : -1;
}

} // namespace

DeathGuard::DeathGuard(QByteArray name, std::string script, std::vector<std::string> arguments)
    : m_name(std::move(name))
    , m_script(awaitDeath + script)
    , m_arguments(std::move(arguments)) {}

DeathGuard::~DeathGuard() {
    if (m_process < 0)
        return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
}

void DeathGuard::afterOurDeath(const QByteArray& order) {
    if (!std::exchange(m_wasStarted, true))
        start();
    if (m_orders.isOpen()) {
        const auto line = order + '\n';
        (void)::send(m_orders.get(), line.constData(), static_cast<std::size_t>(line.size()),
                     MSG_NOSIGNAL | MSG_DONTWAIT);
    }
}

void DeathGuard::start() {
    const auto name = awaitName(m_name);
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    const FileDescriptor itsEnd(ends[0]);
    m_orders = FileDescriptor(ends[1]);
    std::vector<std::string> words{"sh", "-c", m_script, "talvera-guard"};
    words.insert(words.end(), m_arguments.begin(), m_arguments.end());
    m_process = spawnGuard(std::move(words), itsEnd.get(), name.get());
}

} // namespace talvera
