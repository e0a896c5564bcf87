// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace talvera::test {

/// Another user of the machine, who reads all that /proc tells of the recognisers that work in a directory,
/// again and again, until told to stop. Where the test isn't root it is the same user, who can read no less.
/// To be made before there are threads.
class Eavesdropper {
public:
    /// Other tests may run recognisers at the same time: those with `directory` in their arguments count.
    explicit Eavesdropper(const QByteArray& directory) {
        std::array<int, 2> end{};
        std::array<int, 2> heard{};
        if (::pipe2(end.data(), O_CLOEXEC) != 0 || ::pipe2(heard.data(), O_CLOEXEC) != 0)
            std::abort();
        m_process = ::fork();
        if (m_process == 0) {
            ::close(end[1]);
            listen(directory, end[0], heard[1]);
        }
        ::close(end[0]);
        ::close(heard[1]);
        m_end = end[1];
        m_heard = heard[0];
    }
    Eavesdropper(const Eavesdropper&) = delete;
    Eavesdropper& operator=(const Eavesdropper&) = delete;
    ~Eavesdropper() { tell(); }

    /// Stops, and answers everything different that was read of programs called whisper-cli or sh.
    QByteArray tell() {
        if (m_process < 0)
            return {};
        ::close(m_end);
        QByteArray all;
        std::array<char, 65536> piece{};
        ssize_t count = 0;
        while ((count = ::read(m_heard, piece.data(), piece.size())) > 0 || (count < 0 && errno == EINTR))
            all.append(piece.data(), std::max<ssize_t>(count, 0));
        ::close(m_heard);
        ::waitpid(std::exchange(m_process, -1), nullptr, 0);
        return all;
    }

private:
    static QByteArray contentOf(const std::string& path) {
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (file < 0)
            return {};
        QByteArray content;
        std::array<char, 8192> piece{};
        ssize_t count = 0;
        while ((count = ::read(file, piece.data(), piece.size())) > 0)
            content.append(piece.data(), count);
        ::close(file);
        return content;
    }

    static QByteArray everythingAbout(const std::string& process) {
        QByteArray all;
        for (const char* file : {"/cmdline", "/environ", "/stat", "/status", "/fd/3"})
            all += contentOf(process + file);
        return all;
    }

    [[noreturn]] static void listen(const QByteArray& directory, int end, int heard) {
        constexpr uid_t nobody = 65534;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
            ::_exit(1);
        QByteArray known;
        pollfd told{end, POLLIN, 0};
        while (::poll(&told, 1, 0) == 0) {
            DIR* processes = ::opendir("/proc");
            while (const auto* entry = ::readdir(processes)) {
                const auto process = "/proc/" + std::string(entry->d_name);
                const auto name = contentOf(process + "/comm");
                if (!name.startsWith("whisper-cli") && !name.startsWith("tool"))
                    continue;
                const auto commandLine = contentOf(process + "/cmdline");
                if (!commandLine.contains(directory))
                    continue;
                const auto heardNow = everythingAbout(process);
                for (const auto& words : {heardNow, commandLine}) {
                    if (!known.contains(words))
                        known += words + '\n';
                }
            }
            ::closedir(processes);
            if (known.size() > (1 << 24))
                break;
        }
        for (qsizetype sent = 0; sent < known.size();) {
            const auto count =
                ::write(heard, known.constData() + sent, static_cast<size_t>(known.size() - sent));
            if (count <= 0)
                break;
            sent += count;
        }
        ::_exit(0);
    }

    pid_t m_process = -1;
    int m_end = -1;
    int m_heard = -1;
};

} // namespace talvera::test
