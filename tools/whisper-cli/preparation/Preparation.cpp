// SPDX-License-Identifier: MIT
//
// Part of our build of the recogniser, see the patches beside it.

#include "Preparation.h"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>

#include <sys/socket.h>
#include <unistd.h>

namespace talvera::preparation {

namespace {

/// Programs that start the recogniser look for this in its file before they start it without a recording.
[[gnu::used]] constexpr char mark[] = "talvera: waits for TALVERA_INPUT_FD";

/// -1 for what is no number.
int numberOf(const char* text) {
    int number = -1;
    const auto* end = text + std::strlen(text);
    const auto read = std::from_chars(text, end, number);
    return read.ec == std::errc() && read.ptr == end ? number : -1;
}

bool isSocket(int descriptor) {
    int type = 0;
    socklen_t bytes = sizeof type;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &bytes) == 0 && type == SOCK_STREAM;
}

} // namespace

bool isAsked() {
    const char* name = std::getenv("TALVERA_INPUT_FD");
    const int descriptor = name != nullptr ? numberOf(name) : -1;
    if (descriptor <= STDERR_FILENO || !isSocket(descriptor) || ::dup2(descriptor, STDIN_FILENO) < 0)
        return false;
    ::close(descriptor);
    return true;
}

void tellReady() {
    // A plain write, which confinement leaves. One to a starter that has gone ends us, as it should.
    while (::write(STDIN_FILENO, "r", 1) < 0 && errno == EINTR) {
    }
}

} // namespace talvera::preparation
