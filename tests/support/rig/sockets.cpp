// SPDX-License-Identifier: MIT
#include "sockets.h"

#include <cerrno>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>

void fail(const std::string& what) {
    throw std::runtime_error(what);
}

void failWithErrno(const std::string& what) {
    fail(what + ": " + std::strerror(errno));
}

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        fail("path too long for a socket: " + path);
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

int connectTo(const std::string& path) {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = addressOf(path);
    if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        failWithErrno(path);
    return socket;
}

void writeAll(int socket, const void* data, std::size_t size) {
    if (send(socket, data, size, MSG_NOSIGNAL) != static_cast<ssize_t>(size))
        failWithErrno("write");
}

bool isReadable(int socket, int timeoutMs) {
    pollfd ready{socket, POLLIN, 0};
    return poll(&ready, 1, timeoutMs) > 0;
}
