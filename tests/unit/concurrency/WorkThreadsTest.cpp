// SPDX-License-Identifier: MIT
#include "concurrency/WorkThreads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

using namespace talvera;
using namespace std::chrono_literals;

namespace {

/// Takes so long that whoever doesn't wait for it is seen to.
struct SlowToGo {
    explicit SlowToGo(std::atomic<bool>& isGone)
        : m_isGone(isGone) {}
    ~SlowToGo() {
        std::this_thread::sleep_for(50ms);
        m_isGone = true;
    }

private:
    std::atomic<bool>& m_isGone;
};

TEST(WorkThreadsTest, join_waitsForWhatAThreadDestroysLast) {
    WorkThreads threads;
    std::atomic<bool> isGone = false;
    threads.start("slow", [&isGone] { thread_local const SlowToGo last(isGone); });
    threads.join();
    EXPECT_TRUE(isGone);
}

TEST(WorkThreadsTest, end_waitsForWhatAThreadDestroysLast) {
    std::atomic<bool> isGone = false;
    {
        WorkThreads threads;
        threads.start("slow", [&isGone] { thread_local const SlowToGo last(isGone); });
    }
    EXPECT_TRUE(isGone);
}

TEST(WorkThreadsTest, join_waitsForThreadsThatAreStartedMeanwhile) {
    WorkThreads threads;
    std::atomic<bool> isGone = false;
    threads.start("first",
                  [&] { threads.start("second", [&] { thread_local const SlowToGo last(isGone); }); });
    threads.join();
    EXPECT_TRUE(isGone);
}

TEST(WorkThreadsTest, start_doesNotWaitForThoseThatWork) {
    WorkThreads threads;
    std::promise<void> gate;
    threads.start("first", [opened = gate.get_future().share()] { opened.wait(); });
    threads.start("second", [&gate] { gate.set_value(); });
    threads.join(); // returns
}

} // namespace
