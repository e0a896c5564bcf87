// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <sys/types.h>
#include <thread>
#include <utility>
#include <vector>

namespace talvera {

/// A process or thread that holds the clipboard for us, behind a socket; see ClipboardLink.h. Destroying it
/// hangs up.
class ClipboardHolder {
public:
    virtual ~ClipboardHolder();
    ClipboardHolder(const ClipboardHolder&) = delete;
    ClipboardHolder& operator=(const ClipboardHolder&) = delete;

    int socket() const { return m_socket; }

    /// Nothing will come from it any more.
    virtual void giveUp() {}

protected:
    explicit ClipboardHolder(int socket)
        : m_socket(socket) {}
    void hangUp();

private:
    int m_socket;
};

/// The companion program. It goes on when we hang up, until another program takes the clipboard.
class CompanionProcess final : public ClipboardHolder {
public:
    /// `environment` is all that it gets of ours, as "NAME=value". Null when it can't be started.
    static std::unique_ptr<CompanionProcess> start(const std::string& program,
                                                   std::vector<std::string> environment);
    ~CompanionProcess() override;

    /// Ends it.
    void giveUp() override;

private:
    CompanionProcess(int socket, pid_t process)
        : ClipboardHolder(socket)
        , m_process(process) {}

    pid_t m_process;
};

/// A thread that does the same as long as we live.
class ClipboardThread final : public ClipboardHolder {
public:
    /// `serve` returns when the other end of the socket that it gets is hung up. Null when there are no
    /// sockets.
    static std::unique_ptr<ClipboardThread> start(std::function<void(int socket)> serve);
    ~ClipboardThread() override;

private:
    ClipboardThread(int socket, std::thread thread)
        : ClipboardHolder(socket)
        , m_thread(std::move(thread)) {}

    std::thread m_thread;
};

/// Those of these variables that are set, as "NAME=value".
std::vector<std::string> environmentOf(std::initializer_list<const char*> names);

} // namespace talvera
