// SPDX-License-Identifier: MIT
#include "linux/clipboard/endOfSession.h"

#include <csignal>
#include <initializer_list>
#include <sys/signalfd.h>

namespace talvera {

int endOfSession() {
    for (const int number : {SIGINT, SIGHUP, SIGQUIT, SIGPIPE})
        std::signal(number, SIG_IGN);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return ::signalfd(-1, &signals, SFD_CLOEXEC);
}

} // namespace talvera
