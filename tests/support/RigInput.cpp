// SPDX-License-Identifier: MIT
#include "RigInput.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace talvera::test {

namespace {

constexpr int farOutside = 100'000; // pixels; further than any screen reaches

} // namespace

RigInput::RigInput() {
    const char* path = std::getenv("RIG_KEYBOARDS");
    if (path == nullptr)
        throw std::runtime_error("not in a rig: RIG_KEYBOARDS isn't set");
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(m_socket);
        throw std::runtime_error("the rig's keyboards can't be reached");
    }
}

RigInput::~RigInput() {
    ::close(m_socket);
}

void RigInput::press(XKeycode key, int keyboard) {
    request("press " + std::to_string(keyboard) + " " + std::to_string(indexOf(key)));
}

void RigInput::release(XKeycode key, int keyboard) {
    request("release " + std::to_string(keyboard) + " " + std::to_string(indexOf(key)));
}

void RigInput::tap(XKeycode key, int keyboard) {
    press(key, keyboard);
    release(key, keyboard);
}

void RigInput::movePointer(int dx, int dy) {
    request("move " + std::to_string(dx) + " " + std::to_string(dy));
}

void RigInput::pointAt(int x, int y) {
    movePointer(-farOutside, -farOutside);
    movePointer(x, y);
}

void RigInput::pressButton(int button) {
    request("button-press " + std::to_string(button));
}

void RigInput::releaseButton(int button) {
    request("button-release " + std::to_string(button));
}

void RigInput::click(int x, int y, int button) {
    pointAt(x, y);
    pressButton(button);
    releaseButton(button);
}

void RigInput::request(const std::string& line) {
    const std::string bytes = line + "\n";
    if (::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("the rig's keyboards are gone");
    std::string answer;
    while (answer.empty() || answer.back() != '\n') {
        char part[128];
        const ssize_t count = ::read(m_socket, part, sizeof part);
        if (count < 0 && errno == EINTR) // by the end of a child, see outputOf
            continue;
        if (count <= 0)
            throw std::runtime_error("the rig's keyboards are gone");
        answer.append(part, static_cast<std::size_t>(count));
    }
    if (answer != "ok\n")
        throw std::runtime_error("rig: " + answer.substr(0, answer.size() - 1));
}

} // namespace talvera::test
