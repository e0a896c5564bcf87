// SPDX-License-Identifier: MIT
#include "SimulatedMainActor.h"
#include "concurrency/QtMainActor.h"
#include "concurrency/ThreadQueues.h"
#include "concurrency/onBackground.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

using namespace talvera;
using namespace std::chrono_literals;

namespace {

/// Both actors keep the same promises; `run` drives one until `done` says so.
struct ActorUnderTest {
    virtual ~ActorUnderTest() = default;
    virtual MainActor& actor() = 0;
    virtual BackgroundPool& pool() = 0;
    virtual void run(const std::function<bool()>& done) = 0;
};

struct Simulated : ActorUnderTest {
    test::SimulatedMainActor simulated;
    test::SimulatedBackgroundPool background{simulated};
    MainActor& actor() override { return simulated; }
    BackgroundPool& pool() override { return background; }
    void run(const std::function<bool()>& done) override {
        ASSERT_TRUE(simulated.runToRest(1h));
        ASSERT_TRUE(done());
    }
};

struct OnQt : ActorUnderTest {
    int argc = 1;
    char name[5] = "test";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    QtMainActor qt;
    ThreadBackgroundPool background{qt};
    MainActor& actor() override { return qt; }
    BackgroundPool& pool() override { return background; }
    void run(const std::function<bool()>& done) override {
        while (!done())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
};

template <typename T>
class MainActorContract : public testing::Test {
protected:
    T underTest;
};

using Actors = testing::Types<Simulated, OnQt>;
TYPED_TEST_SUITE(MainActorContract, Actors);

Task<void> recordSleep(MainActor& actor, CancellationToken token, std::vector<std::string>& log,
                       std::string name, Duration duration) {
    co_await actor.sleep(duration, token);
    log.push_back(name + (token.isCancelled() ? " cancelled" : " slept"));
}

TYPED_TEST(MainActorContract, post_keepsOrderAndRunsLater) {
    std::vector<int> order;
    for (int i = 0; i < 5; ++i)
        this->underTest.actor().post([&order, i] { order.push_back(i); });
    EXPECT_TRUE(order.empty());
    this->underTest.run([&] { return order.size() == 5; });
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3, 4}));
}

TYPED_TEST(MainActorContract, timers_fireInOrderOfTheirTimesAndNotBefore) {
    auto& actor = this->underTest.actor();
    const auto start = actor.now();
    std::vector<int> order;
    bool early = false;
    actor.startTimer(30ms, [&] {
        order.push_back(3);
        early = early || actor.now() - start < 30ms;
    });
    actor.startTimer(10ms, [&] { order.push_back(1); });
    const auto cancelled = actor.startTimer(15ms, [&] { order.push_back(99); });
    actor.startTimer(20ms, [&] {
        order.push_back(2);
        early = early || actor.now() - start < 20ms;
    });
    actor.cancelTimer(cancelled);
    this->underTest.run([&] { return order.size() == 3; });
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
    EXPECT_FALSE(early);
}

TYPED_TEST(MainActorContract, sleep_cancelledEndsAtOnceAndTheFlagTells) {
    auto& actor = this->underTest.actor();
    std::vector<std::string> log;
    const CancellationToken token;
    recordSleep(actor, token, log, "a", 24h);
    recordSleep(actor, {}, log, "b", 20ms);
    actor.post([token] { token.cancel(); });
    this->underTest.run([&] { return log.size() == 2; });
    EXPECT_THAT(log, testing::UnorderedElementsAre("a cancelled", "b slept"));
}

TYPED_TEST(MainActorContract, block_holdsBackEverythingElse) {
    auto& actor = this->underTest.actor();
    std::vector<std::string> log;
    actor.post([&] {
        actor.post([&] { log.emplace_back("posted"); });
        actor.startTimer(1ms, [&] { log.emplace_back("timer"); });
        actor.block([&] {
            actor.post([&] { log.emplace_back("posted meanwhile"); });
            std::this_thread::sleep_for(5ms);
        });
        log.emplace_back("blocked");
    });
    this->underTest.run([&] { return log.size() == 4; });
    EXPECT_EQ(log.front(), "blocked");
}

TYPED_TEST(MainActorContract, block_throwsWhatTheWorkThrew) {
    bool caught = false;
    this->underTest.actor().post([&] {
        try {
            this->underTest.actor().block([] { throw std::runtime_error("x"); });
        } catch (const std::runtime_error&) {
            caught = true;
        }
    });
    this->underTest.run([&] { return caught; });
    EXPECT_TRUE(caught);
}

Task<void> awaitBackground(BackgroundPool& pool, bool fail, QString& result) {
    std::function<QString()> work = [fail] {
        if (fail)
            throw std::runtime_error("failed");
        return QStringLiteral("text");
    };
    try {
        result = co_await onBackground(pool, work);
    } catch (const std::runtime_error& error) {
        result = QString::fromUtf8(error.what());
    }
}

TYPED_TEST(MainActorContract, onBackground_handsOnResultAndException) {
    QString good;
    QString bad;
    awaitBackground(this->underTest.pool(), false, good);
    awaitBackground(this->underTest.pool(), true, bad);
    this->underTest.run([&] { return !good.isEmpty() && !bad.isEmpty(); });
    EXPECT_EQ(good, "text");
    EXPECT_EQ(bad, "failed");
}

TYPED_TEST(MainActorContract, start_keepsACapturingCoroutineAlive) {
    auto& actor = this->underTest.actor();
    std::string seen;
    actor.start([&actor, &seen, text = std::string("a text too long for the small buffer")]() -> Task<void> {
        co_await actor.sleep(5ms);
        seen = text;
    });
    this->underTest.run([&] { return !seen.empty(); });
    EXPECT_EQ(seen, "a text too long for the small buffer");
}

TEST(ThreadSerialQueue, jobs_runInOrderAndAllBeforeTheEnd) {
    std::vector<int> order;
    {
        ThreadSerialQueue queue("test");
        for (int i = 0; i < 100; ++i)
            queue.async([&order, i] { order.push_back(i); });
    }
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(SimulatedSerialQueue, sleepingJob_delaysTheNextButNotTheMainActor) {
    test::SimulatedMainActor actor;
    test::SimulatedSerialQueue queue(actor);
    std::vector<std::pair<std::string, double>> log;
    queue.async([&] {
        log.emplace_back("first", actor.elapsed());
        queue.sleep(100ms);
    });
    queue.async([&] { log.emplace_back("second", actor.elapsed()); });
    actor.startTimer(50ms, [&] { log.emplace_back("main", actor.elapsed()); });
    ASSERT_TRUE(actor.runToRest(1s));
    EXPECT_EQ(log,
              (std::vector<std::pair<std::string, double>>{{"first", 0.0}, {"main", 0.05}, {"second", 0.1}}));
}

} // namespace
