// SPDX-License-Identifier: MIT
#include "linux/clipboard/ClipboardHolder.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <pthread.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace talvera {

namespace {

constexpr int companionSocket = 3; // where the program looks for it

/// Our end and the other's.
std::optional<std::pair<int, int>> makeSockets() {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return std::nullopt;
    return std::pair(ends[0], ends[1]);
}

} // namespace

ClipboardHolder::~ClipboardHolder() {
    hangUp();
}

void ClipboardHolder::hangUp() {
    if (m_socket >= 0)
        ::close(std::exchange(m_socket, -1));
}

std::unique_ptr<CompanionProcess> CompanionProcess::start(const std::string& program,
                                                          std::vector<std::string> environment) {
    const auto sockets = makeSockets();
    if (!sockets)
        return nullptr;
    const auto [ours, theirs] = *sockets;

    // It must keep nothing of ours open, run in a session of its own so that nothing aimed at us ends it, and
    // hold no directory.
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&files, standard, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_adddup2(&files, theirs, companionSocket);
    posix_spawn_file_actions_addclosefrom_np(&files, companionSocket + 1);
    posix_spawn_file_actions_addchdir_np(&files, "/");

    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);

    std::vector<char*> environmentPointers;
    for (std::string& entry : environment)
        environmentPointers.push_back(entry.data());
    environmentPointers.push_back(nullptr);
    std::string name = program;
    char* arguments[] = {name.data(), nullptr};

    pid_t process = 0;
    const int error =
        ::posix_spawn(&process, program.c_str(), &files, &attributes, arguments, environmentPointers.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    ::close(theirs);
    if (error != 0) {
        ::close(ours);
        return nullptr;
    }
    return std::unique_ptr<CompanionProcess>(new CompanionProcess(ours, process));
}

CompanionProcess::~CompanionProcess() {
    hangUp();
    if (m_process > 0)
        ::waitpid(m_process, nullptr, WNOHANG);
}

void CompanionProcess::giveUp() {
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
        ::waitpid(std::exchange(m_process, 0), nullptr, 0);
    }
}

std::unique_ptr<ClipboardThread> ClipboardThread::start(std::function<void(int socket)> serve) {
    const auto sockets = makeSockets();
    if (!sockets)
        return nullptr;
    const int theirs = sockets->second;
    std::thread thread([serve = std::move(serve), theirs] {
        pthread_setname_np(pthread_self(), "clipboard");
        sigset_t brokenPipe; // a program that asks for the text and ends
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &brokenPipe, nullptr);
        serve(theirs);
        ::close(theirs);
    });
    return std::unique_ptr<ClipboardThread>(new ClipboardThread(sockets->first, std::move(thread)));
}

ClipboardThread::~ClipboardThread() {
    hangUp();
    m_thread.join();
}

std::vector<std::string> environmentOf(std::initializer_list<const char*> names) {
    std::vector<std::string> environment;
    for (const char* name : names) {
        if (const char* value = std::getenv(name))
            environment.push_back(std::string(name) + "=" + value);
    }
    return environment;
}

} // namespace talvera
