// SPDX-License-Identifier: MIT
#include "linux/lonekeys/LoneKeyProgram.h"

#include "linux/lonekeys/helper/askableKeys.h"

#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace talvera {

namespace {

struct Pipe {
    Pipe() {
        int ends[2];
        if (::pipe2(ends, O_CLOEXEC) == 0) {
            reading = FileDescriptor(ends[0]);
            writing = FileDescriptor(ends[1]);
        }
    }
    bool isOpen() const { return reading.isOpen(); }

    FileDescriptor reading;
    FileDescriptor writing;
};

/// The process, or -1. It needs nothing of our environment.
pid_t spawn(const QString& path, const std::set<EvdevCode>& keys, int input, int output) {
    std::vector<std::string> words{QFile::encodeName(path).toStdString()};
    for (const auto key : keys)
        words.push_back(std::to_string(static_cast<int>(key)));
    std::vector<char*> arguments;
    for (auto& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    std::array<char*, 1> environment{nullptr};

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = -1;
    const int error =
        ::posix_spawn(&process, words.front().c_str(), &files, nullptr, arguments.data(), environment.data());
    posix_spawn_file_actions_destroy(&files);
    return error == 0 ? process : -1;
}

} // namespace

bool LoneKeyProgram::isInstalled(const QString& path) {
    struct stat status {};
    const auto name = QFile::encodeName(path);
    return ::stat(name.constData(), &status) == 0 && (status.st_mode & S_ISGID) != 0 &&
           ::access(name.constData(), X_OK) == 0;
}

bool LoneKeyProgram::canTell(EvdevCode code) {
    return isAskable(static_cast<int>(code));
}

std::unique_ptr<LoneKeyProgram> LoneKeyProgram::start(const QString& path, const std::set<EvdevCode>& keys,
                                                      Receiver receiver) {
    Pipe input;
    Pipe output;
    if (!input.isOpen() || !output.isOpen())
        return nullptr;
    const auto process = spawn(path, keys, input.reading.get(), output.writing.get());
    if (process < 0)
        return nullptr;
    return std::unique_ptr<LoneKeyProgram>(new LoneKeyProgram(
        process, std::move(input.writing), std::move(output.reading), std::move(receiver)));
}

LoneKeyProgram::LoneKeyProgram(pid_t process, FileDescriptor input, FileDescriptor output, Receiver receiver)
    : m_process(process)
    , m_input(std::move(input))
    , m_output(std::move(output))
    , m_notifier(std::make_unique<QSocketNotifier>(m_output.get(), QSocketNotifier::Read))
    , m_receiver(std::move(receiver)) {
    ::fcntl(m_output.get(), F_SETFL, O_NONBLOCK);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] { read(); });
}

LoneKeyProgram::~LoneKeyProgram() {
    m_input.reset();
    ::kill(m_process, SIGKILL);
    while (::waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void LoneKeyProgram::read() {
    std::array<char, 256> bytes{};
    const auto count = ::read(m_output.get(), bytes.data(), bytes.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    const std::weak_ptr<int> alive = m_alive;
    if (count > 0) {
        m_unread.append(bytes.data(), static_cast<qsizetype>(count));
        qsizetype end = 0;
        while (!alive.expired() && (end = m_unread.indexOf('\n')) >= 0) {
            const auto line = m_unread.left(end);
            m_unread.remove(0, end + 1);
            take(line);
        }
        return;
    }
    m_hasEnded = true;
    m_notifier->setEnabled(false);
    const auto receiver = m_receiver; // which may end us
    receiver({News::Kind::Ended});
}

void LoneKeyProgram::take(const QByteArray& line) {
    const auto code = static_cast<EvdevCode>(line.mid(line.indexOf(' ') + 1).toUShort());
    const auto receiver = m_receiver; // which may end us
    if (line == "other")
        receiver({News::Kind::Other});
    else if (line.startsWith("down "))
        receiver({News::Kind::Down, code});
    else if (line.startsWith("up "))
        receiver({News::Kind::Up, code});
}

} // namespace talvera
