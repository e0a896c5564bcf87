// SPDX-License-Identifier: MIT
#include "RecogniserGate.h"

#include "AgentProcess.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

void linkAll(const QDir& from, const QDir& to, const QStringList& names) {
    for (const auto& name : from.entryList(names, QDir::AllEntries | QDir::NoDotAndDotDot))
        QFile::link(from.filePath(name), to.filePath(name));
}

} // namespace

RecogniserGate::RecogniserGate() {
    const QFileInfo built(TALVERA_PROGRAM);
    const QDir here(m_directory.path());
    // A copy and no link, since the program finds what belongs to it beside its own file.
    if (!QFile::copy(built.filePath(), program()) || !here.mkdir("Resources"))
        throw std::runtime_error("the program can't be copied");
    linkAll(built.dir(), here, {"talvera-*"});
    const QDir resources(built.dir().filePath("Resources"));
    const QDir ownResources(here.filePath("Resources"));
    linkAll(resources, ownResources, {});

    const auto arrivals = here.filePath("arrivals");
    const auto permits = here.filePath("permits");
    m_arrivals = makePipe(arrivals);
    m_permits = makePipe(permits);
    QFile::remove(ownResources.filePath("whisper-cli"));
    QFile gate(ownResources.filePath("whisper-cli"));
    const auto script =
        QStringLiteral("#!/bin/sh\ncase \"$*\" in *talvera-warmup-*) exec '%3' \"$@\" ;; esac\n"
                       "echo $$ >'%1'\nread -r _ <'%2'\nexec '%3' \"$@\"\n")
            .arg(arrivals, permits, resources.filePath("whisper-cli"));
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
