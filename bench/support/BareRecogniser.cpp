// SPDX-License-Identifier: MIT
#include "support/BareRecogniser.h"

#include "speech/WhisperArguments.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // NOLINT(readability-redundant-declaration): not declared by every C library

namespace talvera::bench {

namespace {

std::string runtimeDirectory() {
    return qgetenv("XDG_RUNTIME_DIR").toStdString();
}

/// The private directory of the one agent that runs in this desktop.
std::string agentsDirectory() {
    for (const auto& entry : std::filesystem::directory_iterator(runtimeDirectory() + "/talvera"))
        return entry.path();
    throw std::runtime_error("the agent has no directory");
}

/// The tool's command line, as the agent makes it.
std::vector<std::string> commandFor(const QString& tool, const std::string& wav, const QString& language) {
    const auto seconds = wavDurationSeconds(static_cast<qint64>(std::filesystem::file_size(wav)));
    std::vector<std::string> command = {tool.toStdString()};
    for (const auto& argument :
         whisperArguments(QString::fromStdString(wav), QStringLiteral(TALVERA_MICRO_MODEL), seconds,
                          WhisperMode::Transcribe, language, std::nullopt))
        command.push_back(argument.toStdString());
    return command;
}

} // namespace

RecordingKeeper::RecordingKeeper()
    : m_directory(agentsDirectory())
    , m_kept(runtimeDirectory() + "/kept.wav")
    , m_watch(::inotify_init1(IN_CLOEXEC)) {
    ::inotify_add_watch(m_watch, m_directory.c_str(), IN_CLOSE_WRITE);
}

RecordingKeeper::~RecordingKeeper() {
    ::close(m_watch);
}

std::string RecordingKeeper::keep() {
    for (;;) {
        constexpr int patienceInMilliseconds = 30'000;
        pollfd news{m_watch, POLLIN, 0};
        if (::poll(&news, 1, patienceInMilliseconds) == 0)
            throw std::runtime_error("the agent has saved no recording");
        alignas(inotify_event) char bytes[4096];
        const ssize_t count = ::read(m_watch, bytes, sizeof bytes);
        for (ssize_t at = 0; at < count;) {
            const auto* event = reinterpret_cast<const inotify_event*>(bytes + at);
            const std::string name = event->name;
            if (name.ends_with(".wav") && !name.starts_with("talvera-warmup-")) {
                take(m_directory + "/" + name);
                return m_kept;
            }
            at += static_cast<ssize_t>(sizeof *event + event->len);
        }
    }
}

void RecordingKeeper::take(const std::string& recording) {
    const std::string taken = m_kept + ".new";
    std::error_code alreadyDeleted; // by an agent whose tool answers at once; then the last one has to do
    std::filesystem::create_hard_link(recording, taken, alreadyDeleted);
    if (!alreadyDeleted)
        std::filesystem::rename(taken, m_kept);
}

Clock::duration timeOfRecognition(const QString& tool, const std::string& wav, const QString& language) {
    auto command = commandFor(tool, wav, language);
    std::vector<char*> arguments;
    for (auto& argument : command)
        arguments.push_back(argument.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const auto start = Clock::now();
    pid_t child = 0;
    int status = -1;
    if (::posix_spawn(&child, arguments[0], &files, nullptr, arguments.data(), environ) == 0)
        ::waitpid(child, &status, 0);
    const auto time = Clock::now() - start;
    posix_spawn_file_actions_destroy(&files);
    if (status != 0)
        throw std::runtime_error("the bare tool failed");
    return time;
}

} // namespace talvera::bench
