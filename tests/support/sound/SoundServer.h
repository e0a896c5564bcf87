// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace talvera::test {

/// A sound server of the test's own, on a private socket, with a loudspeaker ("speaker") and virtual
/// microphones: what is played to a microphone's feed is what it hears.
class SoundServer {
public:
    enum class Kind { PulseAudio, PipeWire };

    explicit SoundServer(Kind kind);
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;
    /// Ends it, however it fares.
    ~SoundServer();

    Kind kind() const { return m_kind; }
    /// As in $PULSE_SERVER.
    std::string address() const;

    /// Returns when it serves. It has no microphone yet.
    void start();
    /// Ends it as a crash would.
    void kill();
    /// Lets it fall silent with its connections open, and wakes it up again.
    void freeze();
    void thaw();

    /// Adds a virtual microphone with its feed and makes it the default source.
    void addMicrophone(const QString& name = QStringLiteral("microphone"), int rate = 48000,
                       int channels = 1);
    /// The same, but nobody can speak into it.
    void addDeafMicrophone(const QString& name);
    void makeDefaultSource(const QString& name);
    /// The sink to play to.
    std::string feedOf(const QString& microphone = QStringLiteral("microphone")) const;
    /// Takes a microphone away as pulling the plug would.
    void removeMicrophone(const QString& name = QStringLiteral("microphone"));

    /// Runs the server's control program; answers what it prints. Throws std::runtime_error when that fails.
    QString control(const QStringList& arguments);

private:
    void startPulseAudio();
    void startPipeWire();
    /// Starts one of its programs.
    void serve(const QStringList& command);
    /// Runs a program to its end; whether it succeeded.
    bool run(const QStringList& command, QString& output);
    std::vector<std::string> environment() const;
    bool tryMakeDefaultSource(const QString& name);
    void plugIn(const QString& name, const std::vector<QStringList>& modules);
    QString path(const char* name) const { return m_directory.filePath(QString::fromLatin1(name)); }

    Kind m_kind;
    QTemporaryDir m_directory;
    std::vector<pid_t> m_processes;
    std::vector<std::pair<QString, QStringList>> m_modules; ///< per microphone, in the order of their loading
};

} // namespace talvera::test
