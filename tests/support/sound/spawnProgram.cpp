// SPDX-License-Identifier: MIT
#include "spawnProgram.h"

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace talvera::test {

namespace {

std::vector<char*> pointersTo(const std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    for (const auto& string : strings)
        pointers.push_back(const_cast<char*>(string.c_str())); // exec doesn't write there
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

pid_t spawnProgram(const std::vector<std::string>& command, std::vector<std::string> environment,
                   Urgency urgency, int input, int output, int error) {
    environment.push_back(std::string("PATH=") + std::getenv("PATH"));
    const auto arguments = pointersTo(command);
    const auto variables = pointersTo(environment);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child != 0)
        return child;

    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(1);
    const sched_param lowest{1};
    if (urgency == Urgency::RealTime)
        sched_setscheduler(0, SCHED_RR, &lowest);
    else
        setpriority(PRIO_PROCESS, 0, -11);
    dup2(input >= 0 ? input : open("/dev/null", O_RDONLY), STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(error, STDERR_FILENO);
    execvpe(arguments.front(), arguments.data(), variables.data());
    _exit(127);
}

} // namespace talvera::test
