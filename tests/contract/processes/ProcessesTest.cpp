// SPDX-License-Identifier: MIT
#include "linux/support/processes.h"

#include "ForkedProcess.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include <sys/prctl.h>
#include <sys/syscall.h>

using namespace talvera;
using talvera::test::ForkedProcess;

namespace {

/// What is told once all of them sleep.
std::map<pid_t, std::uint64_t> sleepsOnceAllSleep(const std::set<pid_t>& threads) {
    for (;;) {
        if (const auto sleeps = sleepsOf(threads))
            return *sleeps;
        std::this_thread::yield();
    }
}

} // namespace

TEST(Processes, sleepersThatDoNothing_haveSleptAsOftenAsBefore) {
    const ForkedProcess one([](auto) { ForkedProcess::stay(); });
    const ForkedProcess other([](auto) { ForkedProcess::stay(); });
    const auto before = sleepsOnceAllSleep({one.pid(), other.pid()});
    EXPECT_EQ(before.size(), 2U);
    EXPECT_EQ(sleepsOf({one.pid(), other.pid()}), before);
}

TEST(Processes, sleeperThatHasBeenAwakeInBetween_hasSleptOnceMore) {
    const ForkedProcess process([](auto say) {
        ::signal(SIGUSR1, [](int) {});
        say('r');
        for (;;) {
            ::pause();
            say('w');
        }
    });
    ASSERT_EQ(process.hear(), 'r');
    const auto before = sleepsOnceAllSleep({process.pid()});
    process.kill(SIGUSR1);
    ASSERT_EQ(process.hear(), 'w');
    EXPECT_NE(sleepsOnceAllSleep({process.pid()}), before);
}

TEST(Processes, oneThatWorksOrIsStopped_doesNotSleep) {
    const ForkedProcess works([](auto say) {
        say('r');
        for (volatile bool isOver = false; !isOver;) {
        }
    });
    ASSERT_EQ(works.hear(), 'r');
    EXPECT_EQ(sleepsOf({works.pid()}), std::nullopt);
    works.kill(SIGSTOP);
    while (processState(works.pid()) != 'T')
        std::this_thread::yield();
    EXPECT_EQ(sleepsOf({works.pid()}), std::nullopt);
}

TEST(Processes, oneThatHasEnded_hasNoPart) {
    ForkedProcess process([](auto) {});
    while (processState(process.pid()) != 'Z')
        std::this_thread::yield();
    EXPECT_TRUE(sleepsOnceAllSleep({process.pid()}).empty());
    const pid_t pid = process.pid();
    process.wait();
    EXPECT_TRUE(sleepsOnceAllSleep({pid}).empty());
    EXPECT_EQ(processName(pid), "");
    EXPECT_FALSE(allProcesses().contains(pid));
}

TEST(Processes, oneThatEndsWhileItIsLookedAt_isNoError) {
    std::atomic<pid_t> looked = 0;
    std::atomic<bool> isOver = false;
    std::thread looker([&] {
        while (!isOver) {
            processState(looked);
            sleepsOf({looked});
        }
    });
    for (int round = 0; round < 300; ++round) {
        ForkedProcess process([](auto) {});
        looked = process.pid();
        process.wait();
    }
    isOver = true;
    looker.join();
}

TEST(Processes, mappedFiles_areLibrariesToo) {
    EXPECT_NE(mappedFiles(::getpid()).find("/libstdc++"), std::string::npos);
    EXPECT_EQ(mappedFiles(0), "");
}

TEST(Processes, descendants_areWhatTheProcessHasStartedAndNoOthers) {
    const ForkedProcess other([](auto) { ForkedProcess::stay(); });
    const ForkedProcess parent([](auto say) {
        if (::fork() == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            say('r');
        }
        ForkedProcess::stay();
    });
    ASSERT_EQ(parent.hear(), 'r');
    EXPECT_EQ(withDescendants({parent.pid()}).size(), 2U);
    EXPECT_EQ(withDescendants({parent.pid(), other.pid()}).size(), 3U);
    EXPECT_TRUE(withDescendants({::getpid()}).contains(other.pid()));
    EXPECT_TRUE(allProcesses().contains(other.pid()));
    EXPECT_EQ(processName(parent.pid()), processName(::getpid()));
}

TEST(Processes, threads_areThoseOfAllTheProcesses) {
    const ForkedProcess process([](auto) { ForkedProcess::stay(); });
    pid_t thread = 0;
    std::thread([&] {
        thread = static_cast<pid_t>(::syscall(SYS_gettid));
        const auto threads = threadsOf({process.pid(), ::getpid()});
        for (const pid_t expected : {thread, ::getpid(), process.pid()})
            EXPECT_TRUE(threads.contains(expected)) << expected;
    }).join();
    EXPECT_NE(thread, ::getpid());
}
