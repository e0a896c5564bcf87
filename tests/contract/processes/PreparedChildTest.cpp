// SPDX-License-Identifier: MIT
// A program that is started ahead of its input, with a shell script in its place.
#include "eventually.h"
#include "linux/posix/PosixChildProcess.h"
#include "openDescriptors.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <limits>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace talvera;
using namespace talvera::test;
using namespace std::chrono_literals;

namespace {

using Limits = PosixChildProcess::Limits;

/// Its input is on descriptor 3 then, and it has said that it waits.
const auto waits = QByteArrayLiteral("# talvera: waits for TALVERA_INPUT_FD\n"
                                     "echo $$ >pid.new; mv pid.new pid\n"
                                     "exec 3<&$TALVERA_INPUT_FD 4>&$TALVERA_INPUT_FD\nprintf r >&4\n");

class PreparedChildTest : public testing::Test {
protected:
    void toolIs(const QByteArray& script) {
        QFile file(at("tool"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/bash\n" + script);
        file.close();
        ::chmod(at("tool").toLocal8Bit().constData(), 0700);
    }

    std::unique_ptr<PreparedChild> prepare(const QStringList& arguments = {}) {
        return process.prepare({at("tool"), arguments, temporary.path(), "--prompt"});
    }

    std::unique_ptr<PreparedChild> prepareAndAwait(const QStringList& arguments = {}) {
        auto child = prepare(arguments);
        EXPECT_TRUE(eventually([&] { return child->isReady(); }));
        return child;
    }

    QString at(const char* name) const { return temporary.path() + '/' + QString::fromUtf8(name); }

    QByteArray contents(const char* name) const {
        QFile file(at(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
    }

    pid_t pid() const { return contents("pid").trimmed().toInt(); }

    /// Zombies count.
    static bool hasChildren() {
        siginfo_t child{};
        return ::waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) == 0;
    }

    /// Whether a process of the machine has been started with this argument.
    static bool runsAnywhere(const QString& argument) {
        const auto processes = QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs);
        return std::any_of(processes.begin(), processes.end(), [&](const QString& process) {
            QFile line("/proc/" + process + "/cmdline");
            return line.open(QIODevice::ReadOnly) && line.readAll().split('\0').contains(argument.toUtf8());
        });
    }

    QTemporaryDir temporary;
    PosixChildProcess process;
};

TEST_F(PreparedChildTest, program_saysThatItWaitsThenReadsItsInput) {
    toolIs(waits + "cat <&3 >got; echo out; echo err >&2; exit 3");
    auto child = prepareAndAwait();
    const auto result = child->finish("the input");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->status, 3);
    EXPECT_EQ(result->standardOutput, "out\n");
    EXPECT_EQ(result->standardError, "err\n");
    EXPECT_EQ(contents("got"), "the input");
    EXPECT_FALSE(hasChildren());
}

TEST_F(PreparedChildTest, inputThatComesBeforeTheProgramWaits_isReadThen) {
    toolIs("sleep 0.2\n" + waits + "cat <&3 >got");
    ASSERT_TRUE(prepare()->finish("early"));
    EXPECT_EQ(contents("got"), "early");
}

TEST_F(PreparedChildTest, inputOfMegabytes_arrivesWhole) {
    toolIs(waits + "sha256sum <&3 >got");
    const QByteArray input(5'000'000, 'x');
    ASSERT_TRUE(prepareAndAwait()->finish(input));
    EXPECT_EQ(contents("got").split(' ').front(),
              QCryptographicHash::hash(input, QCryptographicHash::Sha256).toHex());
}

TEST_F(PreparedChildTest, commandLineAndEnvironment_areThoseOfAnyRunButForTheDescriptor) {
    ::setenv("TALVERA_INPUT_FD", "77", 1); // left over from whoever started us
    toolIs(waits + "cat <&3; tr '\\0' '|' </proc/$$/cmdline >arguments; tr '\\0' '\\n' </proc/$$/environ | "
                   "grep -c '^TALVERA_INPUT_FD=' >named; echo $PATH >path; echo $TALVERA_INPUT_FD >number");
    ASSERT_TRUE(prepareAndAwait({"-f", "a file.wav"})->finish({}));
    ::unsetenv("TALVERA_INPUT_FD");
    EXPECT_TRUE(contents("arguments").endsWith("/tool|-f|a file.wav|"));
    EXPECT_EQ(contents("named"), "1\n");
    EXPECT_NE(contents("number"), "77\n");
    EXPECT_EQ(contents("path").trimmed(), qgetenv("PATH"));
}

TEST_F(PreparedChildTest, privateValue_isOutOfSightHereToo) {
    toolIs("# talvera: takes --prompt /dev/fd/N\n" + waits +
           "cat <&3; tr '\\0' ' ' </proc/$$/cmdline >line; cat $2 >prompt");
    ASSERT_TRUE(prepareAndAwait({"--prompt", "what was said"})->finish({}));
    EXPECT_EQ(contents("prompt"), "what was said");
    EXPECT_FALSE(contents("line").contains("said"));
}

TEST_F(PreparedChildTest, programThatDoesNotKnowHowToWait_isNotStarted) {
    toolIs("echo started >started");
    EXPECT_EQ(prepare()->finish("x"), std::nullopt);
    EXPECT_EQ(contents("started"), "(none)");
}

TEST_F(PreparedChildTest, programThatNeedsMoreMemoryThanIsFree_isNotStarted) {
    toolIs("echo started >started\n" + waits + "cat <&3 >got");
    ChildProcessRequest request{at("tool"), {}, temporary.path(), "--prompt"};
    request.memory = std::numeric_limits<qint64>::max();
    EXPECT_EQ(process.prepare(request)->finish("x"), std::nullopt);
    EXPECT_EQ(contents("started"), "(none)");
    request.memory = 1;
    EXPECT_TRUE(process.prepare(request)->finish("x"));
    EXPECT_EQ(contents("got"), "x");
}

TEST_F(PreparedChildTest, programThatCannotBeStarted_givesNothing) {
    EXPECT_EQ(prepare()->finish("x"), std::nullopt);
    toolIs(waits);
    ::chmod(at("tool").toLocal8Bit().constData(), 0600);
    EXPECT_EQ(prepare()->finish("x"), std::nullopt);
    EXPECT_FALSE(hasChildren());
}

TEST_F(PreparedChildTest, programThatEndsBeforeItHasReadAll_givesNothing) {
    toolIs(waits + "exit 0");
    auto child = prepare();
    EXPECT_EQ(child->finish(QByteArray(5'000'000, 'x')), std::nullopt);
    EXPECT_FALSE(child->isReady());
}

TEST_F(PreparedChildTest, programThatIsKilledWhileItWaits_givesNothing) {
    toolIs(waits + "cat <&3 >got");
    auto child = prepareAndAwait();
    ASSERT_EQ(::kill(pid(), SIGKILL), 0);
    EXPECT_TRUE(eventually([&] { return !child->isReady(); }));
    EXPECT_EQ(child->finish("x"), std::nullopt);
    EXPECT_FALSE(hasChildren());
}

TEST_F(PreparedChildTest, programThatIsKilledWhileItWorks_hasThatResult) {
    toolIs(waits + "cat <&3 >got; kill -ABRT $$");
    const auto result = prepareAndAwait()->finish("x");
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->signalled);
    EXPECT_EQ(result->status, SIGABRT);
}

TEST_F(PreparedChildTest, childThatIsGivenUp_endsWithAllItHasStarted) {
    ASSERT_EQ(::mkfifo(at("lives").toLocal8Bit().constData(), 0600), 0);
    toolIs(waits + "exec 5>lives; echo started >&5; sleep 1000 & wait");
    for (const bool isDestroyed : {false, true}) {
        auto child = prepare();
        QFile lives(at("lives"));
        ASSERT_TRUE(lives.open(QIODevice::ReadOnly));
        EXPECT_EQ(lives.readLine(), "started\n");
        if (isDestroyed)
            child.reset();
        else
            child->end();
        EXPECT_EQ(lives.readLine(), "") << "the pipe ends when nobody holds it any more";
        EXPECT_TRUE(eventually([] { return !hasChildren(); }));
        if (child) {
            EXPECT_EQ(child->finish("x"), std::nullopt);
        }
    }
}

TEST_F(PreparedChildTest, childThatIsGivenUpWhileItWorks_endsToo) {
    toolIs(waits + "cat <&3 >got; : >works; exec sleep 1000");
    auto child = prepare();
    std::optional<ChildProcessResult> result = ChildProcessResult{};
    std::thread working([&] { result = child->finish("x"); });
    EXPECT_TRUE(eventually([this] { return QFile::exists(at("works")); }));
    child->end();
    working.join();
    EXPECT_EQ(result, std::nullopt);
    EXPECT_FALSE(hasChildren());
}

TEST_F(PreparedChildTest, endAll_endsWhatWaitsAndWhatIsPreparedLater) {
    toolIs(waits + "exec sleep 1000");
    auto child = prepareAndAwait();
    process.endAll();
    EXPECT_EQ(child->finish("x"), std::nullopt);
    EXPECT_EQ(prepare()->finish("x"), std::nullopt);
    EXPECT_FALSE(hasChildren());
}

TEST_F(PreparedChildTest, endOfTheObject_waitsForTheChildrensEnd) {
    toolIs(waits + "exec sleep 1000");
    auto child = prepareAndAwait();
    child.reset();
    process = PosixChildProcess();
    EXPECT_FALSE(hasChildren());
}

TEST_F(PreparedChildTest, programThatHangsOverItsInput_isEnded) {
    process = PosixChildProcess({300ms, 60s});
    toolIs(waits + "exec sleep 1000");
    const auto result = prepareAndAwait()->finish("x");
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->hung);
}

TEST_F(PreparedChildTest, waitingForTheInput_isNoHanging) {
    constexpr auto idle = 8s; // that no busy machine reaches over a few bytes
    process = PosixChildProcess({idle, 60s});
    toolIs(waits + "cat <&3 >got");
    auto child = prepareAndAwait();
    std::this_thread::sleep_for(idle + 500ms);
    const auto result = child->finish("late");
    ASSERT_TRUE(result);
    EXPECT_FALSE(result->hung);
    EXPECT_EQ(contents("got"), "late");
}

TEST_F(PreparedChildTest, manyOfThem_leaveNothingOpenAndNoZombie) {
    toolIs(waits + "cat <&3 >got");
    prepareAndAwait()->finish({});
    const auto before = openDescriptors();
    for (int i = 0; i < 30; ++i) {
        auto child = prepare();
        if (i % 3 == 0)
            child->finish("x");
        else if (i % 3 == 1)
            child->end();
    }
    EXPECT_TRUE(eventually([] { return !hasChildren(); }));
    // The first one may still have had some of its own.
    EXPECT_TRUE(eventually([before] { return openDescriptors() <= before; })) << openDescriptors();
}

TEST_F(PreparedChildTest, deathOfTheAgent_endsTheChildWhereverItIs) {
    for (const bool works : {false, true}) {
        ASSERT_TRUE(works || ::mkfifo(at("lives").toLocal8Bit().constData(), 0600) == 0);
        toolIs(waits + (works ? "cat <&3 >got\n" : "") + "exec 5>lives; echo started >&5; exec sleep 1000");
        // The stand-in for the agent is a process of its own, so that it can be killed.
        const auto agent = ::fork();
        if (agent == 0) {
            auto child = prepare();
            if (works)
                child->finish("x");
            ::pause();
            ::_exit(0);
        }
        QFile lives(at("lives"));
        ASSERT_TRUE(lives.open(QIODevice::ReadOnly));
        EXPECT_EQ(lives.readLine(), "started\n");
        ::kill(agent, SIGKILL);
        ::waitpid(agent, nullptr, 0);
        EXPECT_EQ(lives.readLine(), "") << "the pipe ends when nobody holds it any more";
    }
}

TEST_F(PreparedChildTest, deathOfTheAgentAtAnyMoment_leavesNoChild) {
    toolIs(waits + "cat <&3 >got; exec -a \"$0\" sleep 1000");
    constexpr int deaths = 60;
    for (int death = 0; death < deaths; ++death) {
        const auto agent = ::fork();
        if (agent == 0) {
            prepare()->finish("x");
            ::_exit(0);
        }
        std::this_thread::sleep_for(death * 300us); // from before the launch to the middle of the work
        ::kill(agent, SIGKILL);
        ::waitpid(agent, nullptr, 0);
    }
    EXPECT_TRUE(eventually([this] { return !runsAnywhere(at("tool")); }));
}

} // namespace
