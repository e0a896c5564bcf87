// SPDX-License-Identifier: MIT
#pragma once

#include "AgentHome.h"

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryFile>

#include <chrono>

#include <sys/types.h>

namespace talvera::test {

/// The agent itself, as a session runs it, and what it prints. It ends with this object, which fails the test
/// if a window has complained: QML tells of its mistakes in no other way. Every function throws
/// std::runtime_error, with the agent's lines so far, when what it waits for doesn't come in time.
class AgentProcess {
public:
    static constexpr std::chrono::seconds patience{120};

    /// Starts the program and returns when it takes the hotkey.
    explicit AgentProcess(const AgentHome& home, const QString& program = TALVERA_PROGRAM);
    ~AgentProcess();
    AgentProcess(const AgentProcess&) = delete;
    AgentProcess& operator=(const AgentProcess&) = delete;

    /// Starts the program once more beside it, in this home, and answers the exit status of that, which ends
    /// by itself when another agent is there.
    static int startSecond(const AgentHome& home) { return startSecond(home.environment()); }
    static int startSecond(const QProcessEnvironment& environment);

    /// Reads on until the agent traces something that begins so, e.g. "menu recording" or "hud notice". What
    /// was read before is never looked at again, so that each of several waits is for a new event.
    /// Answers what was traced.
    QString await(const QString& traced);

    /// The same for a line that it prints in every build, e.g. "[warmup] whisper ready". Answers the line.
    QString awaitLine(const QString& start);

    /// How often the agent has traced exactly this, in what has been read by now.
    qsizetype count(const QString& traced) const;

    /// Waits until it has done nothing for most of a second: what it makes after its launch is made. While
    /// its main thread is held up for more than a second, as it can be on a busy machine, it hears no keys.
    void awaitRest();

    pid_t pid() const { return static_cast<pid_t>(m_process.processId()); }

    /// Asks it to end, as a session does, and answers its exit status.
    int end();
    /// Waits until it has ended by itself, and answers its exit status.
    int awaitEnd();
    /// Ends it without a chance to tidy up. When this returns it is gone.
    void kill();
    /// Sends a signal and goes on, e.g. SIGSTOP.
    void signal(int number) const;
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    /// What it has written to its standard error by now; the end of this object hands it on to ours.
    QByteArray log() const;

private:
    [[noreturn]] void fail(const QString& what) const;
    void handOnLog() const;

    QProcess m_process;
    QTemporaryFile m_log; ///< no pipe, which would hold it up while nobody reads
    QStringList m_lines;
};

} // namespace talvera::test
