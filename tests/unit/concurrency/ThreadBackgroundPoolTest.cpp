// SPDX-License-Identifier: MIT
#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include <pthread.h>

using namespace talvera;

namespace {

class ThreadBackgroundPoolTest : public testing::Test {
protected:
    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QtMainActor actor;
    std::optional<ThreadBackgroundPool> pool{std::in_place, actor};
};

TEST_F(ThreadBackgroundPoolTest, finish_waitsForAllWork) {
    constexpr int count = 8;
    std::promise<void> gate;
    const auto opened = gate.get_future().share();
    std::atomic<int> ended = 0;
    for (int i = 0; i < count; ++i) {
        pool->run(
            [opened, &ended] {
                opened.wait();
                ++ended;
            },
            [] {});
    }
    std::thread opening([&gate] { gate.set_value(); });
    pool->finish();
    EXPECT_EQ(ended, count);
    opening.join();
}

TEST_F(ThreadBackgroundPoolTest, finish_isHeardOfByTheWork) {
    EXPECT_FALSE(pool->isEnding());
    pool->run(
        [this] {
            while (!pool->isEnding())
                std::this_thread::yield();
        },
        [] {});
    pool->finish();
}

TEST_F(ThreadBackgroundPoolTest, finish_withoutWorkReturns) {
    pool->finish();
    pool->finish();
}

TEST_F(ThreadBackgroundPoolTest, finish_leavesDoneToTheMainActor) {
    bool done = false;
    pool->run([] {}, [&done] { done = true; });
    pool->finish();
    EXPECT_FALSE(done) << "it is the main thread's, which is here";
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

TEST_F(ThreadBackgroundPoolTest, workAfterFinish_isDoneAsEver) {
    pool->finish();
    bool done = false;
    pool->run([] {}, [&done] { done = true; });
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// While it lives the system has no room for another thread's stack.
class NoMoreThreads {
public:
    NoMoreThreads() {
        pthread_getattr_default_np(&m_before);
        pthread_attr_t huge;
        pthread_getattr_default_np(&huge);
        pthread_attr_setstacksize(&huge, std::size_t{1} << 47U);
        pthread_setattr_default_np(&huge);
        pthread_attr_destroy(&huge);
    }
    NoMoreThreads(const NoMoreThreads&) = delete;
    NoMoreThreads& operator=(const NoMoreThreads&) = delete;
    ~NoMoreThreads() {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }

private:
    pthread_attr_t m_before;
};

TEST_F(ThreadBackgroundPoolTest, workThatGetsNoThread_isRefusedAndNotWaitedFor) {
    {
        const NoMoreThreads none;
        EXPECT_THROW(pool->run([] { ADD_FAILURE() << "run all the same"; }, [] {}), std::system_error);
    }
    pool->finish(); // returns
    bool done = false;
    pool->run([] {}, [&done] { done = true; });
    while (!done)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

TEST_F(ThreadBackgroundPoolTest, end_waitsForTheWorkAndForWhatItHolds) {
    std::promise<void> gate;
    const auto opened = gate.get_future().share();
    auto held = std::make_shared<int>(0);
    std::weak_ptr<int> alive = held;
    pool->run([opened, held = std::move(held)] { opened.wait(); }, [] {});
    std::thread opening([&gate] { gate.set_value(); });
    pool.reset();
    EXPECT_TRUE(alive.expired());
    opening.join();
}

} // namespace
