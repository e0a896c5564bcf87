// SPDX-License-Identifier: MIT
#include "linux/support/ChildLauncher.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace talvera;

namespace {

/// What a confined program can do is asked of one that tries.
class ChildConfinementTest : public testing::Test {
protected:
    /// Runs a script of Python's to its end; what it has printed.
    QByteArray run(const QByteArray& script, ChildReach reach = ChildReach::ItsOwnSocket) {
        const auto program = "import ctypes, errno, os, socket, sys, threading\n"
                             "def tried(work):\n"
                             "    try:\n"
                             "        work()\n"
                             "        print('done')\n"
                             "    except OSError as error:\n"
                             "        print(errno.errorcode[error.errno])\n" +
                             script;
        auto child =
            launchChild({"/usr/bin/python3", {"-c", QString::fromUtf8(program)}, temporary.path()}, reach);
        pollfd ended{child.handle.get(), POLLIN, 0};
        constexpr int patience = 60'000;
        if (::poll(&ended, 1, patience) != 1)
            ::kill(-child.pid, SIGKILL);
        ::waitpid(child.pid, nullptr, 0);
        return everythingIn(child.standardOutput.get()) + everythingIn(child.standardError.get());
    }
    static QByteArray everythingIn(int descriptor) {
        QByteArray text;
        char piece[4096];
        for (ssize_t count = 0; (count = ::read(descriptor, piece, sizeof piece)) > 0;)
            text.append(piece, count);
        return text;
    }

    QTemporaryDir temporary;
    QTemporaryDir elsewhere;
};

TEST_F(ChildConfinementTest, network_isOutOfReach) {
    EXPECT_EQ(run("tried(lambda: socket.socket(socket.AF_INET))\n"
                  "tried(lambda: socket.socket(socket.AF_INET6, socket.SOCK_DGRAM))\n"
                  "tried(lambda: socket.socket(socket.AF_NETLINK, socket.SOCK_RAW))\n"),
              "EAFNOSUPPORT\nEAFNOSUPPORT\nEAFNOSUPPORT\n");
}

TEST_F(ChildConfinementTest, ownSocket_canBeListenedOnButNobodyElsesReached) {
    EXPECT_EQ(run("listener = socket.socket(socket.AF_UNIX)\n"
                  "tried(lambda: listener.bind('own.sock'))\n"
                  "tried(lambda: listener.listen())\n"
                  "tried(lambda: socket.socket(socket.AF_UNIX).connect('own.sock'))\n"
                  "tried(lambda: socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM))\n"),
              "done\ndone\nEPERM\nEAFNOSUPPORT\n");
}

TEST_F(ChildConfinementTest, processes_canNotBeMadeNorReachedButThreadsCan) {
    EXPECT_EQ(run("tried(lambda: os.fork())\n"
                  "tried(lambda: os.kill(os.getppid(), 0))\n"
                  "thread = threading.Thread(target=lambda: print('thread'))\n"
                  "thread.start(); thread.join()\n"),
              "EPERM\nEPERM\nthread\n");
}

TEST_F(ChildConfinementTest, files_areWrittenWhereItWorksAlone) {
    QFile kept(elsewhere.filePath("kept"));
    ASSERT_TRUE(kept.open(QIODevice::WriteOnly));
    const auto outside = elsewhere.filePath("x").toUtf8();
    EXPECT_EQ(run("tried(lambda: open('own', 'w').write('x'))\n"
                  "tried(lambda: os.remove('own'))\n"
                  "tried(lambda: open('" +
                  outside +
                  "', 'w'))\n"
                  "tried(lambda: os.remove('" +
                  kept.fileName().toUtf8() +
                  "'))\n"
                  "tried(lambda: open('/etc/hostname').read())\n"),
              "done\ndone\nEACCES\nEACCES\ndone\n");
    EXPECT_FALSE(QFile::exists(elsewhere.filePath("x")));
}

TEST_F(ChildConfinementTest, environment_isAsBareAsCanBe) {
    qputenv("LLAMA_ARG_HOST", "0.0.0.0");
    EXPECT_EQ(run("print(sorted(set(os.environ) - {'LC_CTYPE'}), os.environ['HOME'] == os.getcwd())\n"),
              QByteArray(qEnvironmentVariableIsSet("LANG") ? "['HOME', 'LANG', 'PATH'] True\n"
                                                           : "['HOME', 'PATH'] True\n"));
    EXPECT_EQ(run("print(os.environ['LLAMA_ARG_HOST'])\n", ChildReach::AsWe), "0.0.0.0\n");
    qunsetenv("LLAMA_ARG_HOST");
}

TEST_F(ChildConfinementTest, childrenOfAnotherKind_areAsFreeAsWe) {
    EXPECT_EQ(run("tried(lambda: socket.socket(socket.AF_INET))\n"
                  "tried(lambda: os.waitpid(os.fork() or os._exit(0), 0))\n",
                  ChildReach::AsWe),
              "done\ndone\n");
}

} // namespace
