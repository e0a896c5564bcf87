// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <sys/un.h>

// Small tools over sockets. What fails throws std::runtime_error.

[[noreturn]] void fail(const std::string& what);
[[noreturn]] void failWithErrno(const std::string& what);

sockaddr_un addressOf(const std::string& path);
int connectTo(const std::string& path);
void writeAll(int socket, const void* data, std::size_t size);
bool isReadable(int socket, int timeoutMs);
