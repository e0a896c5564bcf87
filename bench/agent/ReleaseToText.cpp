// SPDX-License-Identifier: MIT
// release_to_text [DICTATIONS [ours]]: how long after the hotkey was let go the first key of the text
// arrives, beside what the bare recogniser needs for the same recording with the same arguments. Each
// dictation is followed by one run of the bare tool, so that both meet the machine in the same mood. Once
// with the real tool, and once with one that answers at once, which shows our own part alone; with "ours"
// only that.
#include "receivers/Receiver.h"
#include "speech/WhisperArguments.h"
#include "support/Dictating.h"
#include "support/Figure.h"
#include "support/PrivateProgram.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ; // NOLINT(readability-redundant-declaration): not declared by every C library

using namespace talvera;
using namespace talvera::bench;

namespace {

const auto sentence = QStringLiteral("Please send the report tomorrow.");
const auto language = QStringLiteral("en");

std::string runtimeDirectory() {
    return qgetenv("XDG_RUNTIME_DIR").toStdString();
}

/// The private directory of the one agent that runs in this desktop.
std::string agentsDirectory() {
    for (const auto& entry : std::filesystem::directory_iterator(runtimeDirectory() + "/talvera"))
        return entry.path();
    throw std::runtime_error("the agent has no directory");
}

/// Keeps the recording that the agent is about to write, which it would delete.
class RecordingKeeper {
public:
    RecordingKeeper()
        : m_watch(::inotify_init1(IN_CLOEXEC)) {
        ::inotify_add_watch(m_watch, m_directory.c_str(), IN_CLOSE_WRITE);
    }
    ~RecordingKeeper() { ::close(m_watch); }
    RecordingKeeper(const RecordingKeeper&) = delete;
    RecordingKeeper& operator=(const RecordingKeeper&) = delete;

    /// Waits for the recording and answers where it is kept.
    std::string keep() {
        for (;;) {
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

private:
    void take(const std::string& recording) {
        const std::string taken = m_kept + ".new";
        std::error_code alreadyDeleted; // by an agent whose tool answers at once; then the last one has to do
        std::filesystem::create_hard_link(recording, taken, alreadyDeleted);
        if (!alreadyDeleted)
            std::filesystem::rename(taken, m_kept);
    }

    std::string m_directory = agentsDirectory();
    std::string m_kept = runtimeDirectory() + "/kept.wav";
    int m_watch;
};

/// Runs a program to its end and answers how long that took.
Clock::duration timeOf(std::vector<std::string> command) {
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

/// The tool's command line, as the agent makes it.
std::vector<std::string> commandFor(const QString& tool, const std::string& wav) {
    const auto seconds = wavDurationSeconds(static_cast<qint64>(std::filesystem::file_size(wav)));
    std::vector<std::string> command = {tool.toStdString()};
    for (const auto& argument :
         whisperArguments(QString::fromStdString(wav), QStringLiteral(TALVERA_MICRO_MODEL), seconds,
                          WhisperMode::Transcribe, language, std::nullopt))
        command.push_back(argument.toStdString());
    return command;
}

struct Aims {
    std::optional<Aim> ratio;
    std::optional<Aim> extra;
};

void compare(const char* name, const QString& program, const QString& tool, int dictations,
             const Aims& aims) {
    const std::string with = std::string(", ") + name;
    Figure agent("release of the hotkey to the first key" + with);
    Figure bare("the bare tool on the same recording" + with);
    Figure ratio("  ratio", "");
    Figure extra("  beyond the bare tool");

    const auto speech = test::spoken(sentence);
    test::Receiver editor(test::Receiver::Kind::Gtk);
    Dictating dictating({{"sourceLanguageCode", language}, {"typewriterThresholdSeconds", 15.0}}, program);
    RecordingKeeper recordings;
    for (int dictation = 0; dictation <= dictations; ++dictation) {
        dictating.holdAndSay(speech);
        const auto wav = recordings.keep();
        dictating.awaitEnd();
        const auto ours = dictating.firstTyped() - dictating.released();
        const auto theirs = timeOf(commandFor(tool, wav));
        if (dictation == 0)
            continue; // what is done only once, and what is read from the disk
        agent.add(milliseconds(ours));
        bare.add(milliseconds(theirs));
        ratio.add(milliseconds(ours) / milliseconds(theirs));
        extra.add(milliseconds(ours - theirs));
    }
    agent.print();
    bare.print();
    if (aims.ratio)
        ratio.print(aims.ratio);
    extra.print(aims.extra);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const int dictations = argc > 1 ? std::max(std::atoi(argv[1]), 1) : 20;
    try {
        if (argc <= 2)
            compare("whisper-cli", TALVERA_PROGRAM, QStringLiteral(TALVERA_WHISPER_CLI), dictations,
                    {Aim::atMost(1.02), Aim::atMost(15)});
        const PrivateProgram instant(sentence);
        compare("a tool that answers at once", instant.program(), instant.recogniser(), dictations,
                {std::nullopt, Aim::atMost(15)});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "release_to_text: %s\n", error.what());
        return 1;
    }
    return 0;
}
