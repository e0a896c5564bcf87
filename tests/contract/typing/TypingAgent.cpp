// SPDX-License-Identifier: MIT
#include "TypingAgent.h"

#include "linux/x11/server/X11Server.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace talvera::test {

namespace {

void makePipe(int (&ends)[2]) {
    if (::pipe2(ends, O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
}

} // namespace

TypingAgent::TypingAgent() {
    int commands[2];
    int answers[2];
    makePipe(commands);
    makePipe(answers);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, commands[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, answers[1], STDOUT_FILENO);
    std::string program = TALVERA_X11_AGENT;
    std::string companion = TALVERA_X11_COMPANION;
    char* arguments[] = {program.data(), companion.data(), nullptr};
    const int error = ::posix_spawn(&m_process, program.c_str(), &files, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&files);
    ::close(commands[0]);
    ::close(answers[1]);
    m_commands = ::fdopen(commands[1], "w");
    m_answers = ::fdopen(answers[0], "r");
    if (error != 0) {
        throw std::runtime_error("can't start " + program);
    }
    std::signal(SIGPIPE, SIG_IGN);
    awaitDone();
}

TypingAgent::~TypingAgent() {
    std::fclose(m_commands); // it ends with its commands
    std::fclose(m_answers);
    if (m_process > 0) {
        ::waitpid(m_process, nullptr, 0);
    }
}

void TypingAgent::tell(const std::string& command) {
    std::fputs((command + "\n").c_str(), m_commands);
    std::fflush(m_commands);
    awaitDone();
}

void TypingAgent::awaitDone() {
    char answer[16];
    if (!std::fgets(answer, sizeof answer, m_answers)) {
        throw std::runtime_error("the agent has ended");
    }
}

/// What it has sent and the server hasn't read would be lost with it. Once the server has answered twice, it
/// has read what was sent before.
void TypingAgent::kill() {
    const auto connection = X11Server().connect();
    connection->roundTrip();
    connection->roundTrip();
    ::kill(m_process, SIGKILL);
    ::waitpid(std::exchange(m_process, 0), nullptr, 0);
}

void TypingAgent::stop() const {
    ::kill(m_process, SIGSTOP);
}

void TypingAgent::goOn() const {
    ::kill(m_process, SIGCONT);
}

pid_t TypingAgent::companion() const {
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "stat");
        int process = 0;
        std::string name;
        char state = 0;
        pid_t parent = 0;
        if (file >> process >> name >> state >> parent && parent == m_process &&
            std::string_view(name).starts_with("(talvera-x11")) {
            return process;
        }
    }
    throw std::runtime_error("the agent has no companion");
}

bool awaitEnd(pid_t process) {
    constexpr int patience = 20'000;
    const int descriptor = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
    if (descriptor < 0) {
        return true;
    }
    pollfd ended{descriptor, POLLIN, 0};
    const bool hasEnded = ::poll(&ended, 1, patience) > 0;
    ::close(descriptor);
    return hasEnded;
}

} // namespace talvera::test
