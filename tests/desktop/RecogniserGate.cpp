// SPDX-License-Identifier: MIT
#include "RecogniserGate.h"

#include "AgentProcess.h"

#include <QFile>

#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace talvera::test {

namespace {

/// A pipe with a name. Opened for both directions, so that neither end waits for the other to come.
int makePipe(const QString& path) {
    const auto name = QFile::encodeName(path);
    const int pipe =
        ::mkfifo(name.constData(), 0600) == 0 ? ::open(name.constData(), O_RDWR | O_CLOEXEC) : -1;
    if (pipe < 0)
        throw std::runtime_error("no pipe for the gate");
    return pipe;
}

} // namespace

RecogniserGate::RecogniserGate() {
    const auto arrivals = m_copy.at("arrivals");
    const auto permits = m_copy.at("permits");
    m_arrivals = makePipe(arrivals);
    m_permits = makePipe(permits);
    QFile::remove(m_copy.installed("whisper-cli"));
    QFile gate(m_copy.installed("whisper-cli"));
    const auto script =
        QStringLiteral("#!/bin/sh\ncase \"$*\" in *talvera-warmup-*) exec '%3' \"$@\" ;; esac\n"
                       "echo $$ >'%1'\nread -r _ <'%2'\nexec '%3' \"$@\"\n")
            .arg(arrivals, permits, InstalledCopy::built("whisper-cli"));
    if (!gate.open(QIODevice::WriteOnly) || gate.write(script.toUtf8()) < 0 ||
        !gate.setPermissions(QFile::ReadOwner | QFile::ExeOwner))
        throw std::runtime_error("no gate");
}

RecogniserGate::~RecogniserGate() {
    ::close(m_arrivals);
    ::close(m_permits);
}

pid_t RecogniserGate::awaitRun() {
    constexpr auto patience = std::chrono::milliseconds(AgentProcess::patience);
    pollfd arrival{m_arrivals, POLLIN, 0};
    char line[32] = {};
    // A line as short as this is written and read whole.
    if (::poll(&arrival, 1, static_cast<int>(patience.count())) <= 0 ||
        ::read(m_arrivals, line, sizeof line - 1) <= 0)
        throw std::runtime_error("no recogniser comes to the gate");
    return static_cast<pid_t>(std::stol(line));
}

void RecogniserGate::letIn() {
    if (::write(m_permits, "\n", 1) != 1)
        throw std::runtime_error("the gate is gone");
}

} // namespace talvera::test
