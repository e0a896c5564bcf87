// SPDX-License-Identifier: MIT
// The X server dies under the agent. The desktop is gone after that, so this is the only test on its one.
#include "DesktopTest.h"
#include "RecogniserGate.h"
#include "linux/x11/server/X11Server.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <csignal>
#include <stdexcept>

#include <sys/resource.h>
#include <sys/socket.h>

using namespace talvera;
using namespace talvera::test;

namespace {

pid_t processOfServer() {
    const auto connection = X11Server().connect();
    ucred server{};
    socklen_t size = sizeof server;
    if (::getsockopt(connection->descriptor(), SOL_SOCKET, SO_PEERCRED, &server, &size) != 0)
        throw std::runtime_error("the X server has no process");
    return server.pid;
}

/// Name, state and parent of a process; nothing when it is gone.
QByteArrayList statusOf(pid_t process) {
    QFile file("/proc/" + QString::number(process) + "/stat");
    const auto line = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const auto name = line.mid(line.indexOf('(') + 1, line.lastIndexOf(')') - line.indexOf('(') - 1);
    const auto others = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return others.size() < 2 ? QByteArrayList() : QByteArrayList{name, others[0], others[1]};
}

/// Zombies have ended: whose they are now is not the agent's business.
bool hasEnded(pid_t process) {
    const auto status = statusOf(process);
    return status.isEmpty() || status[1] == "Z";
}

pid_t companionOf(pid_t agent) {
    for (const auto& name : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs)) {
        const auto status = statusOf(name.toInt());
        if (!status.isEmpty() && status[0].startsWith("talvera-x11") && status[2].toInt() == agent)
            return name.toInt();
    }
    throw std::runtime_error("the agent has no companion");
}

/// Lets programs that we start write core files, if they do.
void allowCoreFiles() {
    rlimit limit{};
    ::getrlimit(RLIMIT_CORE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_CORE, &limit);
}

using ServerDeath = DesktopTest;

} // namespace

TEST_F(ServerDeath, duringARecognition_takesTheAgentAndAllOfItAlong) {
    allowCoreFiles();
    home.set("ASAN_OPTIONS",
             "detect_leaks=0"); // the toolkit ends us where we stand, and nothing is given back
    RecogniserGate gate;
    startAgent({}, gate.program());
    holdAndSay(spoken("Good morning."));
    const pid_t recogniser = gate.awaitRun();
    const pid_t companion = companionOf(agent->pid());
    ASSERT_EQ(leftFiles().size(), 1) << "the recording";

    ::kill(processOfServer(), SIGKILL);
    EXPECT_EQ(agent->awaitEnd(), EXIT_FAILURE);
    EXPECT_TRUE(agent->log().endsWith("The display server has gone, and Talvera ends with it.\n"));
    EXPECT_TRUE(eventually([&] { return hasEnded(recogniser) && hasEnded(companion); }));
    EXPECT_EQ(leftFiles(), QStringList());
    const QDir shared(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/talvera");
    EXPECT_EQ(shared.entryList({"agent-*"}, QDir::Dirs), QStringList());
    QDirIterator cores(qEnvironmentVariable("XDG_RUNTIME_DIR"), {"core*"}, QDir::Files | QDir::Hidden,
                       QDirIterator::Subdirectories);
    EXPECT_FALSE(cores.hasNext()) << cores.next().toStdString();
}
