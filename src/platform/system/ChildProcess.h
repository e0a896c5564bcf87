// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

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
};

/// How a child process ended.
struct ChildProcessResult {
    int status = 0;              ///< the exit status, or the signal's number when a signal ended it
    bool signalled = false;      ///< a signal ended it, also one of ours
    bool hung = false;           ///< we ended it, because it had stopped working or had lasted too long
    QByteArray standardError;    ///< everything it wrote there, up to a sane limit
    QByteArray standardOutput{}; ///< the same
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
};

} // namespace talvera
