// SPDX-License-Identifier: MIT
#include "linux/posix/PosixChildProcess.h"
#include "openDescriptors.h"
#include "platform/system/PlatformError.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

using Limits = PosixChildProcess::Limits;

class PosixChildProcessTest : public testing::Test {
protected:
    ChildProcessResult shell(const QString& script, const QStringList& arguments = {}) {
        return process.run({"/bin/sh", QStringList{"-c", script, "sh"} + arguments, temporary.path()});
    }

    QString at(const char* name) const { return temporary.path() + '/' + QString::fromUtf8(name); }

    QByteArray contents(const char* name) const {
        QFile file(at(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    int launchFailure(const QString& executable, const QStringList& arguments = {},
                      const QString& directory = {}) {
        try {
            process.run({executable, arguments, directory.isEmpty() ? temporary.path() : directory});
        } catch (const PlatformError& error) {
            EXPECT_EQ(error.domain(), "ChildProcess");
            return error.code();
        }
        return 0;
    }

    QTemporaryDir temporary;
    PosixChildProcess process;
};

TEST_F(PosixChildProcessTest, goodEnd_isStatusZero) {
    const auto result = shell("exit 0");
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(result.signalled);
    EXPECT_FALSE(result.hung);
    EXPECT_EQ(result.standardError, "");
}

TEST_F(PosixChildProcessTest, lowPriority_isForTheChildAlone) {
    const auto fields = "sed 's/.*) //' /proc/self/stat | cut -d' ' -f17; ionice 2>/dev/null || echo unknown";
    ChildProcessRequest request{"/bin/sh", {"-c", fields}, temporary.path()};
    const auto before = process.run(request).standardOutput;
    request.priority = ChildProcessRequest::Priority::Low;
    EXPECT_EQ(process.run(request).standardOutput, "19\nidle\n");
    EXPECT_EQ(::getpriority(PRIO_PROCESS, 0), before.split('\n').front().toInt());
    request.priority = ChildProcessRequest::Priority::Normal;
    EXPECT_EQ(process.run(request).standardOutput, before);
}

TEST_F(PosixChildProcessTest, statusAndStandardError_areHandedOn) {
    const auto result = shell("echo out; printf 'err\\377' >&2; exit 10");
    EXPECT_EQ(result.status, 10);
    EXPECT_FALSE(result.signalled);
    EXPECT_EQ(result.standardError, "err\xFF");
}

TEST_F(PosixChildProcessTest, standardOutput_isWhatThePipeHeldAtTheEnd) {
    const auto result = shell("printf ' \\303\\266\\n\\377'; echo err >&2");
    EXPECT_EQ(result.standardOutput, " \303\266\n\377");
    EXPECT_EQ(result.standardError, "err\n");
    EXPECT_EQ(shell("exec >&-").standardOutput, "");
}

TEST_F(PosixChildProcessTest, standardOutputOfAFailedRun_isThereToo) {
    EXPECT_EQ(shell("echo out; exit 3").standardOutput, "out\n");
    EXPECT_EQ(shell("echo out; kill -KILL $$").standardOutput, "out\n");
}

TEST_F(PosixChildProcessTest, child_leavesNoCoreFile) {
    rlimit before{};
    ::getrlimit(RLIMIT_CORE, &before);
    rlimit open{before.rlim_max, before.rlim_max};
    ::setrlimit(RLIMIT_CORE, &open);
    EXPECT_EQ(shell("ulimit -c; ulimit -Hc").standardOutput, "0\n0\n");
    rlimit own{};
    ::getrlimit(RLIMIT_CORE, &own);
    EXPECT_EQ(own.rlim_cur, open.rlim_cur) << "ours stays";
    ::setrlimit(RLIMIT_CORE, &before);
}

/// What a program that takes descriptors says in its file, as part of a shell script.
const auto mark = QByteArrayLiteral("# talvera: takes --prompt /dev/fd/N\n");

class PrivateOptionTest : public PosixChildProcessTest {
protected:
    void toolIs(const QByteArray& script) {
        QFile file(at("tool"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script);
        file.close();
        ::chmod(at("tool").toLocal8Bit().constData(), 0700);
    }

    ChildProcessResult runTool(const QStringList& arguments) {
        return process.run({at("tool"), arguments, temporary.path(), "--prompt"});
    }
};

TEST_F(PrivateOptionTest, programThatTakesDescriptors_getsTheValueOutOfSight) {
    toolIs(mark + "cat $3; echo; tr '\\0' ' ' </proc/$$/cmdline; exec ls -1 /proc/self/fd >descriptors");
    const auto before = openDescriptors();
    const auto lines = runTool({"-l", "--prompt", "größer\nand \"more\""}).standardOutput.split('\n');
    ASSERT_EQ(lines.size(), 3) << lines.join('|').toStdString();
    EXPECT_EQ(lines[0] + lines[1], "größerand \"more\"");
    EXPECT_TRUE(lines[2].contains("-l --prompt /dev/fd/")) << lines[2].toStdString();
    EXPECT_FALSE(lines[2].contains("more")) << lines[2].toStdString();
    EXPECT_EQ(contents("descriptors").count('\n'), 5)
        << "the streams, the value and the directory that is listed";
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(PrivateOptionTest, anyOtherProgram_getsTheValueAsItStands) {
    toolIs("printf %s \"$3\"");
    EXPECT_EQ(runTool({"-l", "--prompt", "said before"}).standardOutput, "said before");
}

TEST_F(PrivateOptionTest, optionThatIsNotThereOrHasNoValue_isNoTrouble) {
    toolIs(mark + "printf '<%s>' \"$@\"");
    EXPECT_EQ(runTool({"-l", "en"}).standardOutput, "<-l><en>");
    EXPECT_EQ(runTool({"-l", "--prompt"}).standardOutput, "<-l><--prompt>");
    EXPECT_EQ(runTool({}).standardOutput, "<>");
}

TEST_F(PrivateOptionTest, emptyAndLongValues_arriveWhole) {
    toolIs(mark + "cat $2 | wc -c");
    EXPECT_EQ(runTool({"--prompt", ""}).standardOutput.trimmed(), "0");
    EXPECT_EQ(runTool({"--prompt", QString(300'000, u'x')}).standardOutput.trimmed(), "300000");
}

TEST_F(PosixChildProcessTest, signal_isItsNumber) {
    const auto result = shell("kill -SEGV $$");
    EXPECT_EQ(result.status, SIGSEGV);
    EXPECT_TRUE(result.signalled);
    EXPECT_FALSE(result.hung);
}

TEST_F(PosixChildProcessTest, arguments_arriveAsTheyStand) {
    const QStringList arguments = {"with blank", "quote\"'`", "$HOME", "*", "", "-x", "größer 😀", "a\nb"};
    shell(R"(printf '<%s>' "$@" > arguments)", arguments);
    EXPECT_EQ(contents("arguments"), "<with blank><quote\"'`><$HOME><*><><-x><größer 😀><a\nb>");
}

TEST_F(PosixChildProcessTest, workingDirectory_isTheOneGiven) {
    shell("pwd -P > where");
    EXPECT_EQ(contents("where").trimmed(), QDir(temporary.path()).canonicalPath().toUtf8());
}

TEST_F(PosixChildProcessTest, environment_isInherited) {
    qputenv("TALVERA_TEST_VARIABLE", "größer");
    shell("printf %s \"$TALVERA_TEST_VARIABLE\" > value");
    qunsetenv("TALVERA_TEST_VARIABLE");
    EXPECT_EQ(contents("value"), "größer");
}

TEST_F(PosixChildProcessTest, toolThatIsMissing_cantBeStarted) {
    EXPECT_EQ(launchFailure(at("none")), ENOENT);
}

TEST_F(PosixChildProcessTest, toolThatIsNotExecutable_cantBeStarted) {
    QFile file(at("tool"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n");
    file.close();
    EXPECT_EQ(launchFailure(at("tool")), EACCES);
    EXPECT_EQ(launchFailure(temporary.path()), EACCES);
}

TEST_F(PosixChildProcessTest, toolThatIsNoProgram_cantBeStarted) {
    QFile file(at("tool"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no program");
    file.close();
    ::chmod(at("tool").toLocal8Bit().constData(), 0700);
    EXPECT_EQ(launchFailure(at("tool")), ENOEXEC);
}

TEST_F(PosixChildProcessTest, directoryThatIsMissing_keepsTheToolFromStarting) {
    EXPECT_EQ(launchFailure("/bin/true", {}, at("none")), ENOENT);
}

TEST_F(PosixChildProcessTest, argumentThatCantBeHandedOver_isNotCut) {
    EXPECT_EQ(launchFailure("/bin/true", {QString(QChar(u'\0')) + "a"}), EINVAL);
}

TEST_F(PosixChildProcessTest, argumentsBeyondTheSystemsLimit_areAnError) {
    EXPECT_EQ(launchFailure("/bin/true", {QString(10'000'000, u'a')}), E2BIG);
}

TEST_F(PosixChildProcessTest, muchStandardError_neverBlocksTheTool) {
    const auto result = shell("head -c 900000 /dev/zero | tr '\\0' x >&2; exit 4");
    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.standardError.size(), 900000);
}

TEST_F(PosixChildProcessTest, endlessStandardError_isKeptUpToALimit) {
    const auto result = shell("head -c 5000000 /dev/zero | tr '\\0' x >&2; exit 4");
    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.standardError.size(), 1 << 20);
}

TEST_F(PosixChildProcessTest, anHourOfTextOnStandardOutput_doesNotBlockTheTool) {
    EXPECT_EQ(shell("head -c 200000 /dev/zero && : > done").status, 0);
    EXPECT_EQ(contents("done"), "");
}

TEST_F(PosixChildProcessTest, closedStreams_areFine) {
    const auto result = shell("exec >&- 2>&-; sleep 0.05; exit 6");
    EXPECT_EQ(result.status, 6);
    EXPECT_EQ(result.standardError, "");
}

TEST_F(PosixChildProcessTest, grandchildThatKeepsTheStreams_isNotWaitedFor) {
    const auto started = std::chrono::steady_clock::now();
    const auto result = shell("sleep 30 & echo $! > pid; echo err >&2; exit 0");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.standardError, "err\n");
    EXPECT_LT(std::chrono::steady_clock::now() - started, 20s);
    ::kill(contents("pid").trimmed().toInt(), SIGKILL);
}

TEST_F(PosixChildProcessTest, child_getsOurInputAndTwoPipesAndNothingElse) {
    const int leaky = ::open("/dev/null", O_RDONLY); // as some library might
    shell("readlink /proc/self/fd/0 > input; exec ls -1 /proc/self/fd > descriptors");
    EXPECT_EQ(contents("descriptors"), "0\n1\n2\n3\n"); // the last one is the directory that is listed
    EXPECT_EQ(contents("input").trimmed(), QFile::symLinkTarget("/proc/self/fd/0").toUtf8());
    ::close(leaky);
}

TEST_F(PosixChildProcessTest, signalsOfTheChild_areAsAfterALogin) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto handler = ::signal(SIGPIPE, SIG_IGN);
    shell("exec grep -E 'SigBlk|SigIgn' /proc/self/status > signals");
    ::signal(SIGPIPE, handler);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    EXPECT_EQ(contents("signals"), "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
}

TEST_F(PosixChildProcessTest, manyRuns_leaveNothingOpenAndNoZombie) {
    shell("exit 0");
    const auto before = openDescriptors();
    for (int i = 0; i < 50; ++i) {
        shell("exit 3");
        launchFailure(at("none"));
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(PosixChildProcessTest, runsOfSeveralThreads_dontTouchEachOther) {
    std::vector<std::thread> threads;
    std::atomic<int> good = 0;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([this, thread, &good] {
            for (int i = 0; i < 10; ++i) {
                const auto result = shell("echo $1 >&2; exit $1", {QString::number(thread + 1)});
                if (result.status == thread + 1 && result.standardError.toInt() == thread + 1)
                    ++good;
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(good, 80);
}

TEST_F(PosixChildProcessTest, toolThatHangs_isEndedWithAllItHasStarted) {
    process = PosixChildProcess(Limits{300ms, 60s});
    const auto result = shell("sleep 1000 & echo $! > pid; echo err >&2; wait");
    EXPECT_TRUE(result.hung);
    EXPECT_TRUE(result.signalled);
    EXPECT_EQ(result.status, SIGKILL);
    EXPECT_EQ(result.standardError, "err\n");
    const auto pid = contents("pid").trimmed().toInt();
    ASSERT_GT(pid, 0);
    // It is killed together with its parent, but reaped by another process, in its own time.
    for (int look = 0; look < 500; ++look) {
        QFile status(QStringLiteral("/proc/%1/status").arg(pid));
        if (!status.open(QIODevice::ReadOnly) || status.readAll().contains("State:\tZ"))
            return;
        std::this_thread::sleep_for(10ms);
    }
    ADD_FAILURE() << "still there";
}

TEST_F(PosixChildProcessTest, toolThatWorks_isNotTakenForAHungOne) {
    // A limit that no busy machine reaches between two of the rests.
    process = PosixChildProcess(Limits{2s, 60s});
    // Rests often, for a part of the limit, and works in between.
    const auto result = shell("i=0; while [ $i -lt 12 ]; do sleep 0.2; j=0; while [ $j -lt 3000 ]; do "
                              "j=$((j+1)); done; i=$((i+1)); done; exit 5");
    EXPECT_FALSE(result.hung);
    EXPECT_EQ(result.status, 5);
}

TEST_F(PosixChildProcessTest, toolThatWorksForEver_isEnded) {
    process = PosixChildProcess(Limits{60s, 300ms});
    const auto started = std::chrono::steady_clock::now();
    const auto result = shell("while :; do :; done");
    EXPECT_TRUE(result.hung);
    EXPECT_EQ(result.status, SIGKILL);
    EXPECT_GE(std::chrono::steady_clock::now() - started, 300ms);
}

TEST_F(PosixChildProcessTest, toolThatBlocksOnFullStandardOutput_isEnded) {
    process = PosixChildProcess(Limits{500ms, 60s});
    EXPECT_TRUE(shell("exec cat /dev/zero").hung);
}

TEST_F(PosixChildProcessTest, toolThatIsStopped_isEnded) {
    process = PosixChildProcess(Limits{300ms, 60s});
    EXPECT_TRUE(shell("kill -STOP $$").hung);
}

TEST_F(PosixChildProcessTest, endAll_killsWhatRunsWithAllItHasStarted) {
    ASSERT_EQ(::mkfifo(at("lives").toLocal8Bit().constData(), 0600), 0);
    ChildProcessResult result;
    // Both the tool and what it has started hold the pipe's write end, from before the reader hears of it.
    std::thread running([&] { result = shell("exec 3>lives; echo started >&3; sleep 1000 & wait"); });
    QFile lives(at("lives"));
    ASSERT_TRUE(lives.open(QIODevice::ReadOnly));
    EXPECT_EQ(lives.readLine(), "started\n");
    process.endAll();
    running.join();
    EXPECT_TRUE(result.signalled);
    EXPECT_EQ(result.status, SIGKILL);
    EXPECT_FALSE(result.hung);
    EXPECT_EQ(lives.readLine(), "") << "the pipe ends when nobody holds it any more";
}

TEST_F(PosixChildProcessTest, endAll_endsTheRunsOfAllThreads) {
    const auto directory = temporary.path();
    std::vector<std::thread> threads;
    std::atomic<int> killed = 0;
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const int inputBefore = ::fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
    ::dup2(ends[1], STDIN_FILENO); // what a tool inherits
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this, &killed] {
            if (shell("printf s >&0; exec sleep 1000").status == SIGKILL)
                ++killed;
        });
    }
    char word = 0;
    for (std::size_t thread = 0; thread < threads.size(); ++thread)
        EXPECT_EQ(::read(ends[0], &word, 1), 1);
    process.endAll();
    for (auto& thread : threads)
        thread.join();
    ::dup2(inputBefore, STDIN_FILENO);
    for (const int descriptor : {inputBefore, ends[0], ends[1]})
        ::close(descriptor);
    EXPECT_EQ(killed, 4);
}

TEST_F(PosixChildProcessTest, endAll_letsNoLaterRunLast) {
    process.endAll();
    for (int run = 0; run < 3; ++run) {
        const auto result = shell("exec sleep 1000");
        EXPECT_TRUE(result.signalled);
        EXPECT_EQ(result.status, SIGKILL);
        EXPECT_FALSE(result.hung);
    }
}

TEST_F(PosixChildProcessTest, endAll_isOfThisObjectsRunsOnly) {
    PosixChildProcess other;
    other.endAll();
    EXPECT_EQ(shell("exit 5").status, 5);
}

TEST_F(PosixChildProcessTest, usualLimits_areAMinuteAndHalfAnHour) {
    EXPECT_EQ(Limits{}.idle, 60s);
    EXPECT_EQ(Limits{}.total, 30min);
}

TEST_F(PosixChildProcessTest, deathOfTheAgent_endsTheTool) {
    // The stand-in for the agent is a process of its own, so that it can be killed. The tool holds the pipe's
    // write end as its standard input; it closes when the tool is gone.
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const auto agent = ::fork();
    if (agent == 0) {
        ::dup2(ends[1], STDIN_FILENO);
        ::close(ends[1]);
        shell("echo started >&0; exec sleep 1000");
        ::_exit(0);
    }
    ::close(ends[1]);
    char line[8] = {};
    ASSERT_EQ(::read(ends[0], line, sizeof line), 8);
    ::kill(agent, SIGKILL);
    ::waitpid(agent, nullptr, 0);
    pollfd gone{ends[0], POLLIN, 0};
    EXPECT_EQ(::poll(&gone, 1, 10000), 1);
    EXPECT_EQ(::read(ends[0], line, sizeof line), 0);
    ::close(ends[0]);
}

} // namespace
