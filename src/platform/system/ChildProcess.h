// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace talvera {

/// What to run. No shell is involved: each argument arrives as it stands.
struct ChildProcessRequest {
    enum class Priority {
        Normal,
        Low, ///< everything else on the machine goes first, with the processor and the disk
    };

    QString executable;
    QStringList arguments;
    QString workingDirectory;

    /// The option whose value no other user may read; empty for none. Every user of the machine can read a
    /// command line, so a program that knows how gets the value on another way.
    QString privateOption{};

    Priority priority = Priority::Normal;

    /// How many bytes of memory have to be free for it to be started ahead of its input: other programs are
    /// not to suffer for what nobody waits for yet. run() doesn't ask.
    qint64 memory = 0;

    bool operator==(const ChildProcessRequest&) const = default;
};

/// How a child process ended.
struct ChildProcessResult {
    int status = 0;              ///< the exit status, or the signal's number when a signal ended it
    bool signalled = false;      ///< a signal ended it, also one of ours
    bool hung = false;           ///< we ended it, because it had stopped working or had lasted too long
    QByteArray standardError;    ///< everything it wrote there, up to a sane limit
    QByteArray standardOutput{}; ///< the same

    bool operator==(const ChildProcessResult&) const = default;
};

/// A program that has been started ahead of its input: it has loaded what it needs, or is about to, and
/// waits. Any thread. One that is destroyed before it was given its input is ended.
class PreparedChild {
public:
    virtual ~PreparedChild() = default;

    /// Hands the input over, waits for the program's end and collects what it has written, as
    /// ChildProcess::run() does; its limits begin now. Nothing when the program could not be started, has
    /// ended before it had read the input, or was ended by us. To be called once.
    virtual std::optional<ChildProcessResult> finish(const QByteArray& input) = 0;

    /// Ends the program, whatever it does, without waiting for its end.
    virtual void end() = 0;

    /// The program waits for its input.
    virtual bool isReady() const = 0;
};

/// Runs other programs. Any thread.
class ChildProcess {
public:
    virtual ~ChildProcess() = default;

    /// Starts the program, waits for its end and collects what it has written. Standard output is read only
    /// then: a program that writes more than a mebibyte there stands still.
    /// A program that has used no CPU time for 60 seconds, or has run for 30 minutes, is ended.
    /// Throws PlatformError (domain "ChildProcess", code errno) when it can't be started.
    virtual ChildProcessResult run(const ChildProcessRequest& request) = 0;

    /// Starts the program ahead of its input, without waiting for it. Null for a program that doesn't know
    /// how to wait, and where none can be prepared.
    virtual std::unique_ptr<PreparedChild> prepare(const ChildProcessRequest&) { return nullptr; }
};

} // namespace talvera
