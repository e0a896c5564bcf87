// SPDX-License-Identifier: MIT
//
// rig-keeper [--with-parent] COMMAND...
//
// Runs COMMAND and, when it has ended or the keeper is told to end (SIGTERM, SIGINT, SIGHUP), ends every
// process that came out of it, however deep and however detached: the keeper is the parent that orphans fall
// back to, so none of them can get away from it. Exits with COMMAND's status, or with 128 + the signal's
// number. With --with-parent it also ends when the process that started it does.

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr timespec graceAfterTerminate{1, 500'000'000};
constexpr timespec pauseBetweenKills{0, 20'000'000};

std::multimap<pid_t, pid_t> childrenByParent() {
    std::multimap<pid_t, pid_t> children;
    DIR* proc = opendir("/proc");
    if (proc == nullptr)
        return children;
    while (const dirent* entry = readdir(proc)) {
        const auto pid = static_cast<pid_t>(std::strtol(entry->d_name, nullptr, 10));
        if (pid <= 0)
            continue;
        std::ifstream file("/proc/" + std::string(entry->d_name) + "/stat");
        std::string stat;
        std::getline(file, stat);
        // The second field is the program's name in parentheses, and the name may hold any character.
        const auto afterName = stat.rfind(')');
        if (afterName == std::string::npos)
            continue;
        std::istringstream rest(stat.substr(afterName + 1));
        char state = 0;
        pid_t parent = 0;
        if (rest >> state >> parent)
            children.emplace(parent, pid);
    }
    closedir(proc);
    return children;
}

std::vector<pid_t> descendants() {
    const auto children = childrenByParent();
    std::vector<pid_t> found{getpid()};
    for (std::size_t next = 0; next < found.size(); ++next) {
        const auto [first, last] = children.equal_range(found[next]);
        for (auto child = first; child != last; ++child)
            found.push_back(child->second);
    }
    found.erase(found.begin());
    return found;
}

void signalDescendants(int signal) {
    for (const pid_t pid : descendants())
        kill(pid, signal);
}

// Reaps what has ended. True when no child, and so no descendant, is left.
bool reapedAll() {
    pid_t pid = 0;
    while ((pid = waitpid(-1, nullptr, WNOHANG)) > 0) {
    }
    return pid == -1;
}

timespec now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time;
}

// Waits until all children have ended, at most as long as given.
bool waitForAll(const sigset_t& signals, timespec limit) {
    timespec deadline = now();
    deadline.tv_sec += limit.tv_sec;
    deadline.tv_nsec += limit.tv_nsec;
    while (!reapedAll()) {
        const timespec time = now();
        const long long left =
            (deadline.tv_sec - time.tv_sec) * 1'000'000'000LL + (deadline.tv_nsec - time.tv_nsec);
        if (left <= 0)
            return false;
        const timespec rest{static_cast<time_t>(left / 1'000'000'000),
                            static_cast<long>(left % 1'000'000'000)};
        sigtimedwait(&signals, nullptr, &rest);
    }
    return true;
}

void endAll(const sigset_t& signals) {
    signalDescendants(SIGTERM);
    signalDescendants(SIGCONT);
    bool ended = waitForAll(signals, graceAfterTerminate);
    while (!ended) {
        signalDescendants(SIGKILL);
        ended = waitForAll(signals, pauseBetweenKills);
    }
}

int exitStatus(int waitStatus) {
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 128 + WTERMSIG(waitStatus);
}

// Waits until the command has ended or a signal asks the keeper to end.
int watch(pid_t command, const sigset_t& signals) {
    for (;;) {
        const int signal = sigwaitinfo(&signals, nullptr);
        if (signal != SIGCHLD && signal > 0)
            return 128 + signal;
        int status = 0;
        pid_t pid = 0;
        while ((pid = waitpid(-1, &status, WNOHANG)) > 0) {
            if (pid == command)
                return exitStatus(status);
        }
    }
}

} // namespace

int main(int count, char** arguments) {
    int first = 1;
    if (count > 1 && std::strcmp(arguments[1], "--with-parent") == 0) {
        const pid_t parent = getppid();
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent)
            return 128 + SIGTERM;
        first = 2;
    }
    if (count <= first) {
        std::fprintf(stderr, "usage: rig-keeper [--with-parent] COMMAND...\n");
        return 2;
    }
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGCHLD})
        sigaddset(&signals, signal);
    sigset_t before;
    sigprocmask(SIG_BLOCK, &signals, &before);

    const pid_t command = fork();
    if (command == -1) {
        std::perror("rig-keeper: fork");
        return 1;
    }
    if (command == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        sigprocmask(SIG_SETMASK, &before, nullptr);
        execvp(arguments[first], arguments + first);
        std::perror(arguments[first]);
        _exit(127);
    }
    const int status = watch(command, signals);
    endAll(signals);
    return status;
}
