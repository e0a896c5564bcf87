// SPDX-License-Identifier: MIT
// A session whose compositor tells of its windows and of no keys: sway, whose own socket the agent doesn't
// find.
#include "OnWayland.h"

#include <QFile>
#include <QProcess>

#include <memory>
#include <stdexcept>

#include <sys/stat.h>

namespace talvera::test {

namespace {

/// Runs the commands whose words are written to this pipe. Sway doesn't run as the user whose agent it is
/// where that is root.
class CommandRunner {
public:
    CommandRunner(const QString& pipe, const QProcessEnvironment& environment) {
        const auto path = QFile::encodeName(pipe);
        QFile::remove(pipe);
        if (::mkfifo(path.constData(), 0600) != 0 || ::chmod(path.constData(), 0622) != 0)
            throw std::runtime_error("no pipe for commands");
        m_shell.setProcessEnvironment(environment);
        m_shell.setProcessChannelMode(QProcess::ForwardedChannels);
        m_shell.start("/bin/sh",
                      {"-c", R"(while read -r word; do "$1" "$word" & done <>"$0")", pipe, TALVERA_PROGRAM});
        if (!m_shell.waitForStarted())
            throw std::runtime_error("no shell");
    }
    ~CommandRunner() {
        m_shell.kill();
        m_shell.waitForFinished();
    }
    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;

private:
    QProcess m_shell;
};

} // namespace

void compositor::bindHotkey(AgentHome& home) {
    static std::unique_ptr<CommandRunner> runner;
    const auto pipe = qEnvironmentVariable("RIG_DIR") + "/commands";
    home.set("SWAYSOCK", {});
    runner.reset();
    runner = std::make_unique<CommandRunner>(pipe, home.environment());
    // Held keys repeat, and each time the whole program starts: at sway's own 25 a second the sanitized one
    // keeps a processor busy.
    tellSway("input type:keyboard repeat_rate 4");
    for (const auto* binding : {"bindsym Ctrl+Mod1+space exec echo press >%1",
                                "bindsym --release Ctrl+Mod1+space exec echo release >%1"})
        tellSway(QString(binding).arg(pipe));
}

void compositor::turnTo(pid_t process) {
    tellSway(QStringLiteral("[pid=%1] focus").arg(process));
}

void compositor::letPressKeys(const QString&) {}

bool compositor::keepsKeysOfTheDead() {
    return false;
}

} // namespace talvera::test
